// Camera: the free camera of the tactical map. Its pose is one 4 x 4 matrix whose rows in memory
// are the right, up and forward axes and the position, so that it is also the OpenGL matrix that
// takes camera space to map space.
#pragma once

#include "map/vector3.h"

class Camera {
  public:
    // At (0, 0, 20), looking straight down, with map y growing down the view.
    Camera();

    // Stores the lens and loads it as the projection matrix. halfHeight is negative: the view is
    // upside down in OpenGL's terms, so that map y grows down the screen as pixels do.
    void setFrustum(float halfWidth, float halfHeight, float nearPlane, float farPlane);
    // Loads the inverse of the pose into the modelview matrix.
    void applyView();
    // world: the vector is in map axes; else in camera axes (right, up, forward).
    void move(float x, float y, float z, bool world, float scale);
    // Turns the axes about an axis through the position, by glRotatef's conventions.
    void rotate(float degrees, float x, float y, float z, bool world);
    // Turns about an axis through the pivot, which keeps its place in the view. No pivot: rotate.
    void rotateAround(float degrees, float x, float y, float z, bool world, const Vector3* pivot);
    // Direction of the ray through a point of the view, u and v from -1 (left, top) to 1 (right,
    // bottom). Its length along forward is 1.
    Vector3 rayThrough(float u, float v) const;

    // The matrices that setFrustum and applyView load, column-major.
    void projectionMatrix(float out[16]) const;
    void viewMatrix(float out[16]) const;

    Vector3 right() const { return {frame[0], frame[1], frame[2]}; }
    Vector3 up() const { return {frame[4], frame[5], frame[6]}; }
    Vector3 forward() const { return {frame[8], frame[9], frame[10]}; }
    Vector3 position() const { return {frame[12], frame[13], frame[14]}; }
    void placeAt(Vector3 p);

    float halfWidth = 0, halfHeight = 0; // half the view at distance 1
    float nearPlane = 0, farPlane = 0;
    float frame[16]; // rows right, up, forward, position, each with a fourth component 0 or 1
};
