// Points and rectangles in pixels, client coordinates of the list.
#pragma once

struct CPoint {
    int x = 0;
    int y = 0;
};

struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};
