/* Tones a picture of 2 x 1 pixels, RGB, in its own memory. */
#include <ombrix/ombrix.h>
#include <stdio.h>

int main(void) {
    unsigned char pixels[] = {200, 100, 50, 10, 20, 30};
    ombrix_rows rows = {sizeof rows, pixels, 6, 2, 1, OMBRIX_RGB, OMBRIX_ALPHA_NONE};
    ombrix_effect* sepia = NULL;
    int i;

    if (ombrix_effect_new("sepia", &sepia) || ombrix_set_integer(sepia, "value", 30) ||
        ombrix_apply(sepia, &rows, &rows)) {
        fprintf(stderr, "%s\n", ombrix_last_error());
        ombrix_effect_free(sepia);
        return 1;
    }
    for (i = 0; i < 6; ++i) printf("%d%c", pixels[i], i % 3 == 2 ? '\n' : ' ');
    ombrix_effect_free(sepia);
    return 0;
}
