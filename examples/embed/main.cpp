// Puts a picture through an effect: embed_example build/release/libombrix.so
#include <cstdio>

#include "ombrix/host.h"

int main(int argc, char** argv) try {
    using namespace ombrix::host;
    Host host;
    host.Load(argc > 1 ? argv[1] : "libombrix.so");
    const Picture photo = host.NewPicture(640, 480);  // black and transparent
    const Object filter = host.New("ColorFilterEffect");
    filter.Set("Red", 40);
    const Picture warm(filter.Call("Apply", {photo}).AsObject());
    const Picture::Lock pixels(warm);
    const auto first = pixels.Row(0);
    std::printf("alpha %d, red %d, green %d, blue %d\n", first[0], first[1], first[2], first[3]);
    std::printf("error code %d\n", static_cast<int>(filter.Get("ErrorCode").AsInteger()));
} catch (const ombrix::host::Error& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
