// Camera: its matrices, moves and turns.
#include "map/camera.h"

#include <GL/gl.h>

#include <cmath>

Camera::Camera()
    : frame{1, 0, 0,  0, //
            0, 1, 0,  0, //
            0, 0, -1, 0, //
            0, 0, 20, 1} {}

void Camera::placeAt(Vector3 p) {
    frame[12] = p.x;
    frame[13] = p.y;
    frame[14] = p.z;
}

void Camera::projectionMatrix(float m[16]) const {
    for (int i = 0; i < 16; ++i)
        m[i] = 0;
    m[0] = 1 / halfWidth;
    m[5] = 1 / halfHeight;
    m[10] = (nearPlane + farPlane) / (farPlane - nearPlane);
    // The eye space of this camera has z growing away from the viewer: w takes z with a plus sign.
    m[11] = 1;
    m[14] = 2 * farPlane * nearPlane / (nearPlane - farPlane);
}

void Camera::setFrustum(float hw, float hh, float n, float f) {
    halfWidth = hw;
    halfHeight = hh;
    nearPlane = n;
    farPlane = f;
    float m[16];
    projectionMatrix(m);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(m);
}

void Camera::viewMatrix(float m[16]) const {
    Vector3 r = right(), u = up(), f = forward(), p = position();
    // The axes are orthonormal, so the inverse rotation is the transpose.
    const Vector3 rows[3] = {r, u, f};
    for (int i = 0; i < 3; ++i) {
        m[0 + i] = rows[i].x;
        m[4 + i] = rows[i].y;
        m[8 + i] = rows[i].z;
        m[12 + i] = -dot(rows[i], p);
    }
    m[3] = m[7] = m[11] = 0;
    m[15] = 1;
}

void Camera::applyView() {
    float m[16];
    viewMatrix(m);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(m);
}

void Camera::move(float x, float y, float z, bool world, float scale) {
    Vector3 step = world ? Vector3{x, y, z} : x * right() + y * up() + z * forward();
    placeAt(position() + scale * step);
}

void Camera::rotate(float degrees, float x, float y, float z, bool world) {
    Vector3 a{x, y, z};
    if (world) a = {dot(right(), a), dot(up(), a), dot(forward(), a)};
    // The pose is multiplied from the right by glRotatef's matrix, as glRotatef would on the stack;
    // an axis of no length turns nothing, as there.
    double length = std::sqrt(double(a.x) * a.x + double(a.y) * a.y + double(a.z) * a.z);
    if (length <= 1e-4) return;
    double ax = a.x / length, ay = a.y / length, az = a.z / length;
    double angle = degrees * (3.14159265358979323846 / 180.0);
    double c = std::cos(angle), s = std::sin(angle), k = 1 - c;
    double r[3][3] = {
        {ax * ax * k + c, ax * ay * k - az * s, ax * az * k + ay * s},
        {ay * ax * k + az * s, ay * ay * k + c, ay * az * k - ax * s},
        {az * ax * k - ay * s, az * ay * k + ax * s, az * az * k + c},
    };
    float turned[9];
    for (int j = 0; j < 3; ++j)     // new axis j
        for (int e = 0; e < 3; ++e) // its component e
            turned[j * 3 + e] = static_cast<float>(frame[0 * 4 + e] * r[0][j] + frame[1 * 4 + e] * r[1][j] +
                                                   frame[2 * 4 + e] * r[2][j]);
    for (int j = 0; j < 3; ++j)
        for (int e = 0; e < 3; ++e)
            frame[j * 4 + e] = turned[j * 3 + e];
}

void Camera::rotateAround(float degrees, float x, float y, float z, bool world, const Vector3* pivot) {
    Vector3 w;
    if (pivot) {
        Vector3 q = *pivot - position();
        w = {dot(right(), q), dot(up(), q), dot(forward(), q)};
    }
    rotate(degrees, x, y, z, world);
    if (pivot) placeAt(*pivot - (w.x * right() + w.y * up() + w.z * forward()));
}

Vector3 Camera::rayThrough(float u, float v) const {
    float a = halfWidth * u;
    float b = -halfHeight * v;
    return forward() + a * right() + b * up();
}
