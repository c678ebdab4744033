/* One drawn item of a layout. */
#ifndef VAULTPAD_SOURCE_GRAPHIC_OBJECT_H
#define VAULTPAD_SOURCE_GRAPHIC_OBJECT_H

#include <Eo.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

namespace vaultpad::graphic {

/*
 * Where an item was drawn and where the trusted application is to show it. Pixels. Destroying an Object never deletes
 * its Evas object: that is the renderer's explicit step.
 */
class Object {
public:
    using List = std::list<std::shared_ptr<Object>>;

    Object();

    std::string id() const { return id_; }
    void id(std::string id) { id_ = std::move(id); }

    /* The rectangle in the offscreen canvas. */
    int top() const { return top_; }
    void top(int top) { top_ = top; }
    int left() const { return left_; }
    void left(int left) { left_ = left; }
    int width() const { return width_; }
    void width(int width) { width_ = width; }
    int height() const { return height_; }
    void height(int height) { height_ = height; }

    /* The place within the pad; undefined until the renderer has set it. */
    int x() const { return x_; }
    void x(int x) { x_ = x; }
    int y() const { return y_; }
    void y(int y) { y_ = y; }

    /* The toolkit's object; not owned. */
    Eo* evas() const { return evas_; }
    void evas(Eo* evas) { evas_ = evas; }

    /* The live list of the nested items' Objects, in document order. Never empty. */
    std::shared_ptr<List> children() const { return children_; }

    /* "id: ..., top: ..., left: ..., width: ..., height: ..." */
    std::string toString() const;

private:
    std::string id_;
    int top_ = 0;
    int left_ = 0;
    int width_ = 0;
    int height_ = 0;
    int x_;
    int y_;
    Eo* evas_ = nullptr;
    std::shared_ptr<List> children_;
};

}  // namespace vaultpad::graphic

#endif
