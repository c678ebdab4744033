/* The pixels that the renderer hands to its caller, once per finished image. */
#ifndef VAULTPAD_SOURCE_GRAPHIC_CANVAS_H
#define VAULTPAD_SOURCE_GRAPHIC_CANVAS_H

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "graphic/object.h"

namespace vaultpad::graphic {

/*
 * A view: the buffer belongs to the renderer and is redrawn as soon as the callback that got the canvas returns.
 * Pixels are 32-bit words 0xAARRGGBB, premultiplied, width() words per row.
 */
class Canvas {
public:
    Canvas() = default;
    Canvas(unsigned int* buffer, int width, int height) : buffer_(buffer), width_(width), height_(height) {}

    /* The caller passes 0 <= index < size(). */
    std::shared_ptr<Object> object(int index) const { return objects_[static_cast<std::size_t>(index)]; }
    int size() const { return static_cast<int>(objects_.size()); }
    void add(std::shared_ptr<Object> object) { objects_.push_back(std::move(object)); }

    /* Lets the objects go; buffer and size stay. */
    void clear() { objects_.clear(); }

    unsigned int* buffer() const { return buffer_; }
    void buffer(unsigned int* buffer) { buffer_ = buffer; }
    int width() const { return width_; }
    void width(int width) { width_ = width; }
    int height() const { return height_; }
    void height(int height) { height_ = height; }

private:
    std::vector<std::shared_ptr<Object>> objects_;
    unsigned int* buffer_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace vaultpad::graphic

#endif
