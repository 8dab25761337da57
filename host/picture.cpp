#include "ombrix/picture.h"

#include "host/own_classes.h"

namespace ombrix::host {
namespace {

Object RequireClass(Object object, const char* className) {
    if (object && !object.IsA(className))
        throw Error("an object of class " + object.ClassName() + " is no " + className);
    return object;
}

PictureData& DataOf(const Picture& picture) {
    HostState::Required();
    if (!picture) throw Error("the picture is nil");
    return PictureOf(picture.Handle());
}

PointData& DataOf(const Point& point) {
    HostState::Required();
    if (!point) throw Error("the point is nil");
    return PointOf(point.Handle());
}

const PixelView& PixelsOf(const Picture& picture) {
    const PictureData& data = DataOf(picture);
    if (!data.pixels) throw Error("the picture is not a bitmap, so its pixels cannot be locked");
    return data.pixels->View();
}

}  // namespace

Picture::Picture(Object object) : Object(RequireClass(std::move(object), kPictureClass)) {}

int Picture::Width() const { return static_cast<int>(DataOf(*this).width); }
int Picture::Height() const { return static_cast<int>(DataOf(*this).height); }
int Picture::Depth() const { return static_cast<int>(DataOf(*this).depth); }

Picture Picture::Mask(bool create) const {
    PictureData& data = DataOf(*this);
    REALobjectStruct* mask = data.Mask(HostState::Required(), create);
    if (mask == nullptr && create) throw Error("there is no memory for a mask");
    return Picture(Object::Share(mask));
}

void Picture::SetMask(const Picture& mask) const {
    PictureData& data = DataOf(*this);
    const std::string objection = data.ObjectionToMask(Handle(), mask.Handle());
    if (!objection.empty()) throw Error("the mask cannot be attached: " + objection);
    data.SetMask(HostState::Required(), mask.Handle());
}

void Picture::DropPixels() const { DataOf(*this).DropPixels(HostState::Required()); }

Picture::Lock::Lock(const Picture& picture)
    : picture_(picture),
      base_(PixelsOf(picture).base),
      rowBytes_(PixelsOf(picture).rowBytes),
      usedBytes_(PixelsOf(picture).UsedRowBytes()) {
    HostState::Required().watch.AddLock(picture_.Handle(), Watch::Locker::Program);
}

Picture::Lock::~Lock() {
    HostState* host = HostState::Current();
    if (host == nullptr) return;
    if (!host->watch.OnOwnThread()) {
        host->watch.FaultOfOtherThread("a lock's end");
        return;
    }
    host->watch.EndLock(picture_.Handle(), Watch::Locker::Program, host->objects.Describe(picture_.Handle()));
}

Point::Point(Object object) : Object(RequireClass(std::move(object), kPointClass)) {}

std::int64_t Point::X() const { return DataOf(*this).x; }
std::int64_t Point::Y() const { return DataOf(*this).y; }

}  // namespace ombrix::host
