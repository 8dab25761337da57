#include "engine/destination.h"

#include "engine/pictures.h"

namespace ombrix {

Destination::Destination(const LockedPixels& model)
    : picture_(CreatePicture(model.Width(), model.Height(), model.BitsPerPixel())),
      pixels_(picture_.Get()),
      // In a smaller picture than was asked for, workers would write past the rows.
      matches_(pixels_.Usable() && pixels_.Width() == model.Width() && pixels_.Height() == model.Height() &&
               pixels_.BitsPerPixel() == model.BitsPerPixel()) {}

REALobjectStruct* Destination::Finish() {
    pixels_.Unlock();
    return picture_.Release();
}

}  // namespace ombrix
