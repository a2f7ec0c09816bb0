#pragma once

namespace marrowick {

// Device-independent pixels of the virtual desktop; y grows downwards.

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(Point const&, Point const&) = default;
};

struct Size {
    int width = 0;
    int height = 0;
    friend bool operator==(Size const&, Size const&) = default;
};

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    friend bool operator==(Rect const&, Rect const&) = default;
};

}
