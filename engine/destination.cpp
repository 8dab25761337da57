#include "engine/destination.h"

#include "picture/picture.h"

namespace ombrix {

Destination::Destination(const LockedPixels& model)
    : picture_(CreatePicture(model.Width(), model.Height(), model.BitsPerPixel())),
      pixels_(picture_.Get()),
      // A host may give another picture than was asked for; workers would then write past its rows.
      matches_(pixels_.Usable() && pixels_.Width() == model.Width() && pixels_.Height() == model.Height() &&
               pixels_.BitsPerPixel() == model.BitsPerPixel()) {}

REALobjectStruct* Destination::Finish() {
    pixels_.Unlock();
    return picture_.Release();
}

}  // namespace ombrix
