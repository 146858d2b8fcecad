// Vector3: a point or direction in map space, where one unit is the distance between the centres of
// two cells of one column, x grows to the right, y down the screen of an unturned camera, z is height.
#pragma once

struct Vector3 {
    float x = 0, y = 0, z = 0;

    // Exactly the same point: for corners shared by neighbours, which hold the same floats.
    bool operator==(const Vector3&) const = default;
};

inline Vector3 operator+(Vector3 a, Vector3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector3 operator-(Vector3 a, Vector3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector3 operator*(float s, Vector3 a) {
    return {s * a.x, s * a.y, s * a.z};
}
inline float dot(Vector3 a, Vector3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
