/* Image effects for C: every effect of every plug-in, by the names that its plug-in registers.
 *
 * All functions may be called from any thread; calls take turns, and an effect's own tasks use the processor's cores.
 * One effect object or picture is for one thread at a time. A function that can fail returns a status; the sentence
 * that says why is in ombrix_last_error(). Strings are UTF-8 and end with a zero byte. */
#ifndef OMBRIX_OMBRIX_H
#define OMBRIX_OMBRIX_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define OMBRIX_API __attribute__((visibility("default")))

typedef enum ombrix_status {
    OMBRIX_OK = 0,
    OMBRIX_INVALID_ARGUMENT = 1, /* a null pointer, a wrong size, rows that overlap, a value of the wrong type */
    OMBRIX_NOT_FOUND = 2,        /* no effect, property, constant or file of this name */
    OMBRIX_REFUSED = 3,          /* the effect refused the values or pictures */
    OMBRIX_CANCELLED = 4,        /* the progress callback asked for it; the destination is partly written */
    OMBRIX_NO_MEMORY = 5,
    OMBRIX_BUSY = 6,   /* the process has another host, whose the sentence says; or a progress function calls */
    OMBRIX_FORKED = 7, /* the library was used before fork, and this is the child */
    OMBRIX_FAILED = 8  /* anything else */
} ombrix_status;

/* The order of the channels in memory, one byte each. */
typedef enum ombrix_layout {
    OMBRIX_GREY = 1, /* 1 byte */
    OMBRIX_RGB = 2,  /* 3 bytes */
    OMBRIX_BGR = 3,
    OMBRIX_RGBA = 4, /* 4 bytes */
    OMBRIX_BGRA = 5,
    OMBRIX_ARGB = 6,
    OMBRIX_ABGR = 7
} ombrix_layout;

/* What the fourth byte of 4-byte pixels is. */
typedef enum ombrix_alpha {
    OMBRIX_ALPHA_NONE = 0,         /* padding, whose value means nothing; it is copied from padding, else 255 */
    OMBRIX_ALPHA_STRAIGHT = 1,     /* colours are not multiplied by it */
    OMBRIX_ALPHA_PREMULTIPLIED = 2 /* colours are; effects get straight ones, and results are multiplied again */
} ombrix_alpha;

/* Rows of pixels in memory of the caller, which stays theirs and has to outlive what is made of them. */
typedef struct ombrix_rows {
    size_t size;         /* sizeof(ombrix_rows); so that later versions can add members */
    void* base;          /* the first byte of the first row */
    ptrdiff_t row_bytes; /* from a row to the next; negative for pictures stored from the bottom up */
    int64_t width;       /* pixels */
    int64_t height;      /* rows */
    ombrix_layout layout;
    ombrix_alpha alpha;
} ombrix_rows;

typedef struct ombrix_effect ombrix_effect;

/* "0.1.0": the library's, not the header's. */
OMBRIX_API const char* ombrix_version(void);

/* The sentence of this thread's last call that failed; empty when none has. Valid until the thread's next failure. */
OMBRIX_API const char* ombrix_last_error(void);

/* Loads a plug-in; null loads the standard one and all that are found in $OMBRIX_PLUGINS, the user's data folder and
 * lib/ombrix/plugins beside the library. Other functions do the latter by themselves on first use; a plug-in that
 * cannot be loaded is passed over there, and the catalogue says so. */
OMBRIX_API ombrix_status ombrix_load(const char* plugin);

/* All that is known of the effects, as JSON. Free `*json` with ombrix_free. */
OMBRIX_API ombrix_status ombrix_catalogue(char** json);
OMBRIX_API void ombrix_free(void* text);

/* The effects' names, in the order of registration. `*name` stays valid until the process ends; null when `index` is
 * not below the number of effects. */
OMBRIX_API ombrix_status ombrix_effect_name(size_t index, const char** name);

/* A new effect: by its class's name or the word that the command uses ("SepiaEffect", "sepia"), in any case. */
OMBRIX_API ombrix_status ombrix_effect_new(const char* name, ombrix_effect** effect);
/* Null is nothing. */
OMBRIX_API void ombrix_effect_free(ombrix_effect* effect);

/* Properties, by the registered name or the catalogue's word for it ("SepiaValue", "value"), in any case. */
OMBRIX_API ombrix_status ombrix_set_integer(ombrix_effect* effect, const char* property, int64_t value);
OMBRIX_API ombrix_status ombrix_set_number(ombrix_effect* effect, const char* property, double value);
OMBRIX_API ombrix_status ombrix_set_boolean(ombrix_effect* effect, const char* property, int value);
OMBRIX_API ombrix_status ombrix_set_point(ombrix_effect* effect, const char* property, int64_t x, int64_t y);
/* A constant of the property's by its name or short name ("overlay"), a number, "true", "60%" or "x,y". */
OMBRIX_API ombrix_status ombrix_set_text(ombrix_effect* effect, const char* property, const char* value);
/* The rows are read whenever the effect is applied, until others or null take their place. Any layout; masks and fills
 * of OMBRIX_ARGB and OMBRIX_RGB are not copied. */
OMBRIX_API ombrix_status ombrix_set_picture(ombrix_effect* effect, const char* property, const ombrix_rows* rows);

OMBRIX_API ombrix_status ombrix_get_integer(const ombrix_effect* effect, const char* property, int64_t* value);
OMBRIX_API ombrix_status ombrix_get_number(const ombrix_effect* effect, const char* property, double* value);
OMBRIX_API ombrix_status ombrix_get_boolean(const ombrix_effect* effect, const char* property, int* value);
OMBRIX_API ombrix_status ombrix_get_point(const ombrix_effect* effect, const char* property, int64_t* x, int64_t* y);

/* Called now and then with the rows that are done and all there are, in the thread that applies the effect. What it
 * returns other than 0 ends the call with OMBRIX_CANCELLED; at once for effects that work pixel by pixel and have no
 * pictures, otherwise when all is done. It can use no effects itself. Null for none. */
typedef int (*ombrix_progress)(void* data, int64_t rows_done, int64_t rows_in_all);
OMBRIX_API ombrix_status ombrix_set_progress(ombrix_effect* effect, ombrix_progress progress, void* data);

/* Puts the effect's result for `source` into `destination`, of the same width and height and of any layout. They may be
 * the same rows (in place), and must not overlap otherwise. Only bytes of pixels are touched. On a refusal the
 * destination is as it was. A grey destination takes the result's luma by Rec. 601. An alpha that the destination has
 * and the source has not is 255. Premultiplied colours are divided and multiplied again, rounded to the nearest. */
OMBRIX_API ombrix_status ombrix_apply(ombrix_effect* effect, const ombrix_rows* source, const ombrix_rows* destination);

/* The same into rows that the library makes: of the source's layout, with `rows->base` to be given to ombrix_free. */
OMBRIX_API ombrix_status ombrix_apply_new(ombrix_effect* effect, const ombrix_rows* source, ombrix_rows* rows);

/* Whether ombrix_apply would work on these rows as they lie: *copies is the number of passes over the pixels beside the
 * effect's own; 0 for none. It depends on the layouts, and on what the effect does with its values: RGBA needs none
 * where alpha is left alone, BGR none where red and blue are alike. */
OMBRIX_API ombrix_status ombrix_copies(ombrix_effect* effect, const ombrix_rows* source, const ombrix_rows* destination,
                                       int* copies);

#ifdef __cplusplus
}
#endif

#endif
