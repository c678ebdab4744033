/* Draws a layout into memory with Evas' buffer engine and delivers one image per top-level object. */
#ifndef VAULTPAD_SOURCE_GRAPHIC_OBJECT_RENDERER_H
#define VAULTPAD_SOURCE_GRAPHIC_OBJECT_RENDERER_H

#include <Evas.h>
#include <Evas_Engine_Buffer.h>

#include <functional>
#include <memory>
#include <string>

#include "context/element-container.h"
#include "context/element.h"
#include "graphic/canvas.h"
#include "graphic/object.h"

namespace vaultpad::graphic {

/* Ecore must be initialised. Not to be used by two threads at once; any thread may, under the main-loop lock it takes.
 */
class ObjectRenderer {
public:
    using ElementPointer = std::shared_ptr<context::Element>;
    using ContainerPointer = std::shared_ptr<context::ElementContainer>;
    using ObjectPointer = std::shared_ptr<Object>;

    /* The secure display's size. */
    ObjectRenderer();
    ObjectRenderer(int width, int height);
    ~ObjectRenderer();
    ObjectRenderer(const ObjectRenderer&) = delete;
    ObjectRenderer& operator=(const ObjectRenderer&) = delete;

    /* Makes canvas and pixel buffer, once. Throws exception::Exception; a later call tries again. */
    void lazyInit();

    /*
     * Draws the container's objects in turn. onCanvas gets each object that has "x" and "y", synchronously and with the
     * main-loop lock held; onError gets the text of the first failure, which ends the pass. An object is delivered once
     * in the container's life. Returns true always; throws only what lazyInit() or onError throws.
     */
    bool render(ContainerPointer container, std::function<void(Canvas&)> onCanvas,
                std::function<void(std::string)> onError);

    /* Deletes the Evas objects of the tree, children first. */
    void onErase(ObjectPointer object);

    /* Throws exception::Exception when a top-level element's references are unusable. */
    void assertElement(ElementPointer element, ContainerPointer container);

    /* Draws the element and what is nested in it. Throws on a number or a nested reference that is no good. */
    ObjectPointer onRender(ElementPointer element, ObjectPointer parent, ContainerPointer container);

    Eo* createRectangle(ElementPointer image);
    Eo* createText(ElementPointer string, ObjectPointer parent, ElementPointer font);
    Eo* createImage(ElementPointer image, std::string baseDirectory);

private:
    void drawTopLevel(const ElementPointer& element, const ObjectPointer& root, const ContainerPointer& container,
                      Canvas& canvas, const std::function<void(Canvas&)>& onCanvas);
    Eo* createEvasObject(const ElementPointer& element, const ObjectPointer& parent, const ContainerPointer& container);
    [[noreturn]] void abandonInit(const char* message);

    int width_;
    int height_;
    Evas* evas_ = nullptr;
    Evas_Engine_Info_Buffer* engineInfo_ = nullptr;
    bool initialized_ = false;
};

}  // namespace vaultpad::graphic

#endif
