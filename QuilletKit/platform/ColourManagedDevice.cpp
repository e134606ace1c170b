#include "platform/ColourManagedDevice.hpp"

#include <cstring>

namespace quillet::mupdf {

namespace {

struct ManagedDevice {
    fz_device super;
    fz_device* target;
    CMYKSource* source;
    fz_irect area;
};

ManagedDevice* managed(fz_device* device) {
    return reinterpret_cast<ManagedDevice*>(device);
}

// The CMYK base of a separation, DeviceN or indexed space. Both union members keep their base
// first, so the field is read the same way for either.
fz_colorspace* cmykBase(fz_context* ctx, fz_colorspace* space) {
    if (!space) {
        return nullptr;
    }
    switch (fz_colorspace_type(ctx, space)) {
    case FZ_COLORSPACE_CMYK: return space;
    case FZ_COLORSPACE_INDEXED:
    case FZ_COLORSPACE_SEPARATION: {
        fz_colorspace* base = space->u.separation.base;
        return base && fz_colorspace_type(ctx, base) == FZ_COLORSPACE_CMYK ? base : nullptr;
    }
    default: return nullptr;
    }
}

// The converter when `space` holds print colours and one is available.
const CMYKConverter* converterFor(fz_context* ctx, ManagedDevice* device, fz_colorspace* space) {
    if (!cmykBase(ctx, space)) {
        return nullptr;
    }
    return device->source->converter(ctx);
}

unsigned char toByte(float value) {
    value = value < 0 ? 0 : value > 1 ? 1 : value;
    return static_cast<unsigned char>(value * 255.0f + 0.5f);
}

// One colour of `space` to sRGB in `rgb`; false (and nothing written) when it is not ours.
bool convertColour(fz_context* ctx, ManagedDevice* device, fz_colorspace* space,
                   const float* colour, float rgb[3]) {
    const CMYKConverter* converter = converterFor(ctx, device, space);
    if (!converter || !colour) {
        return false;
    }
    float cmyk[FZ_MAX_COLORS] = {};
    if (fz_colorspace_type(ctx, space) == FZ_COLORSPACE_CMYK) {
        std::memcpy(cmyk, colour, 4 * sizeof(float));
    } else {
        fz_convert_color(ctx, space, colour, fz_device_cmyk(ctx), cmyk, nullptr,
                         fz_default_color_params);
    }
    unsigned char in[4] = {toByte(cmyk[0]), toByte(cmyk[1]), toByte(cmyk[2]), toByte(cmyk[3])};
    unsigned char out[3];
    converter->toRGB(in, out, 1);
    for (int i = 0; i < 3; ++i) {
        rgb[i] = out[i] / 255.0f;
    }
    return true;
}

// A CMYK pixmap (alpha premultiplied, or none) as a new sRGB pixmap of the same place and size.
// With alpha, each row's colours are divided by it into `row`, converted into `out` and
// multiplied by it again.
fz_pixmap* convertPixmap(fz_context* ctx, const CMYKConverter* converter, fz_pixmap* cmyk) {
    fz_pixmap* volatile rgb = nullptr;
    unsigned char* volatile row = nullptr;
    fz_try(ctx) {
        rgb = fz_new_pixmap(ctx, fz_device_rgb(ctx), cmyk->w, cmyk->h, nullptr, cmyk->alpha);
        rgb->x = cmyk->x;
        rgb->y = cmyk->y;
        rgb->xres = cmyk->xres;
        rgb->yres = cmyk->yres;
        rgb->flags =
            (rgb->flags & ~FZ_PIXMAP_FLAG_INTERPOLATE) | (cmyk->flags & FZ_PIXMAP_FLAG_INTERPOLATE);
        const size_t width = static_cast<size_t>(cmyk->w);
        if (cmyk->alpha) {
            row = static_cast<unsigned char*>(fz_malloc(ctx, width * 7));
        }
        for (int y = 0; y < cmyk->h; ++y) {
            const unsigned char* from = cmyk->samples + y * cmyk->stride;
            unsigned char* to = rgb->samples + y * rgb->stride;
            if (!cmyk->alpha) {
                converter->toRGB(from, to, width);
                continue;
            }
            unsigned char* ink = row;
            unsigned char* out = row + 4 * width;
            for (size_t x = 0; x < width; ++x) {
                const unsigned alpha = from[5 * x + 4];
                for (int i = 0; i < 4; ++i) {
                    const unsigned value = alpha ? (from[5 * x + i] * 255u + alpha / 2) / alpha : 0;
                    ink[4 * x + i] = static_cast<unsigned char>(value > 255 ? 255 : value);
                }
            }
            converter->toRGB(ink, out, width);
            for (size_t x = 0; x < width; ++x) {
                const unsigned alpha = from[5 * x + 4];
                for (int i = 0; i < 3; ++i) {
                    to[4 * x + i] =
                        static_cast<unsigned char>((out[3 * x + i] * alpha + 127) / 255);
                }
                to[4 * x + 3] = static_cast<unsigned char>(alpha);
            }
        }
    }
    fz_always(ctx) {
        fz_free(ctx, row);
    }
    fz_catch(ctx) {
        fz_drop_pixmap(ctx, rgb);
        fz_rethrow(ctx);
    }
    return rgb;
}

// `image` decoded at the size `ctm` draws it, converted to sRGB, as a new image with the same
// soft mask.
fz_image* convertImage(fz_context* ctx, const CMYKConverter* converter, fz_image* image,
                       fz_matrix ctm) {
    fz_pixmap* source = nullptr;
    fz_pixmap* cmyk = nullptr;
    fz_pixmap* rgb = nullptr;
    fz_image* result = nullptr;
    fz_var(source);
    fz_var(cmyk);
    fz_var(rgb);
    fz_var(result);
    fz_try(ctx) {
        int width = 0;
        int height = 0;
        source = fz_get_pixmap_from_image(ctx, image, nullptr, &ctm, &width, &height);
        if (fz_colorspace_type(ctx, source->colorspace) == FZ_COLORSPACE_CMYK) {
            cmyk = fz_keep_pixmap(ctx, source);
        } else {
            cmyk = fz_convert_pixmap(ctx, source, fz_device_cmyk(ctx), nullptr, nullptr,
                                     fz_default_color_params, 1);
        }
        rgb = convertPixmap(ctx, converter, cmyk);
        result = fz_new_image_from_pixmap(ctx, rgb, image->mask);
        result->interpolate = image->interpolate;
        result->orientation = image->orientation;
    }
    fz_always(ctx) {
        fz_drop_pixmap(ctx, rgb);
        fz_drop_pixmap(ctx, cmyk);
        fz_drop_pixmap(ctx, source);
    }
    fz_catch(ctx) {
        fz_drop_image(ctx, result);
        fz_rethrow(ctx);
    }
    return result;
}

void fillPath(fz_context* ctx, fz_device* dev, const fz_path* path, int evenOdd, fz_matrix ctm,
              fz_colorspace* space, const float* colour, float alpha, fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, colour, rgb)) {
        fz_fill_path(ctx, device->target, path, evenOdd, ctm, fz_device_rgb(ctx), rgb, alpha,
                     params);
    } else {
        fz_fill_path(ctx, device->target, path, evenOdd, ctm, space, colour, alpha, params);
    }
}

void strokePath(fz_context* ctx, fz_device* dev, const fz_path* path, const fz_stroke_state* stroke,
                fz_matrix ctm, fz_colorspace* space, const float* colour, float alpha,
                fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, colour, rgb)) {
        fz_stroke_path(ctx, device->target, path, stroke, ctm, fz_device_rgb(ctx), rgb, alpha,
                       params);
    } else {
        fz_stroke_path(ctx, device->target, path, stroke, ctm, space, colour, alpha, params);
    }
}

void fillText(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix ctm,
              fz_colorspace* space, const float* colour, float alpha, fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, colour, rgb)) {
        fz_fill_text(ctx, device->target, text, ctm, fz_device_rgb(ctx), rgb, alpha, params);
    } else {
        fz_fill_text(ctx, device->target, text, ctm, space, colour, alpha, params);
    }
}

void strokeText(fz_context* ctx, fz_device* dev, const fz_text* text, const fz_stroke_state* stroke,
                fz_matrix ctm, fz_colorspace* space, const float* colour, float alpha,
                fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, colour, rgb)) {
        fz_stroke_text(ctx, device->target, text, stroke, ctm, fz_device_rgb(ctx), rgb, alpha,
                       params);
    } else {
        fz_stroke_text(ctx, device->target, text, stroke, ctm, space, colour, alpha, params);
    }
}

void fillImageMask(fz_context* ctx, fz_device* dev, fz_image* image, fz_matrix ctm,
                   fz_colorspace* space, const float* colour, float alpha, fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, colour, rgb)) {
        fz_fill_image_mask(ctx, device->target, image, ctm, fz_device_rgb(ctx), rgb, alpha, params);
    } else {
        fz_fill_image_mask(ctx, device->target, image, ctm, space, colour, alpha, params);
    }
}

void fillImage(fz_context* ctx, fz_device* dev, fz_image* image, fz_matrix ctm, float alpha,
               fz_color_params params) {
    ManagedDevice* device = managed(dev);
    const CMYKConverter* converter = converterFor(ctx, device, image->colorspace);
    if (!converter) {
        fz_fill_image(ctx, device->target, image, ctm, alpha, params);
        return;
    }
    fz_image* converted = convertImage(ctx, converter, image, ctm);
    fz_try(ctx) {
        fz_fill_image(ctx, device->target, converted, ctm, alpha, params);
    }
    fz_always(ctx) {
        fz_drop_image(ctx, converted);
    }
    fz_catch(ctx) {
        fz_rethrow(ctx);
    }
}

// A shading is painted in CMYK over the part of the page it covers, converted, and drawn as an
// image placed pixel for pixel.
void fillShade(fz_context* ctx, fz_device* dev, fz_shade* shade, fz_matrix ctm, float alpha,
               fz_color_params params) {
    ManagedDevice* device = managed(dev);
    const CMYKConverter* converter = converterFor(ctx, device, shade->colorspace);
    fz_irect box = fz_intersect_irect(fz_round_rect(fz_bound_shade(ctx, shade, ctm)), device->area);
    if (!converter || fz_is_empty_irect(box)) {
        fz_fill_shade(ctx, device->target, shade, ctm, alpha, params);
        return;
    }
    fz_pixmap* cmyk = nullptr;
    fz_pixmap* rgb = nullptr;
    fz_image* image = nullptr;
    fz_var(cmyk);
    fz_var(rgb);
    fz_var(image);
    fz_try(ctx) {
        cmyk = fz_new_pixmap_with_bbox(ctx, fz_device_cmyk(ctx), box, nullptr, 1);
        fz_clear_pixmap(ctx, cmyk);
        fz_paint_shade(ctx, shade, nullptr, ctm, cmyk, params, box, nullptr, nullptr);
        rgb = convertPixmap(ctx, converter, cmyk);
        image = fz_new_image_from_pixmap(ctx, rgb, nullptr);
        const fz_matrix place = {static_cast<float>(box.x1 - box.x0),
                                 0,
                                 0,
                                 static_cast<float>(box.y1 - box.y0),
                                 static_cast<float>(box.x0),
                                 static_cast<float>(box.y0)};
        fz_fill_image(ctx, device->target, image, place, alpha, params);
    }
    fz_always(ctx) {
        fz_drop_image(ctx, image);
        fz_drop_pixmap(ctx, rgb);
        fz_drop_pixmap(ctx, cmyk);
    }
    fz_catch(ctx) {
        fz_rethrow(ctx);
    }
}

void beginMask(fz_context* ctx, fz_device* dev, fz_rect area, int luminosity, fz_colorspace* space,
               const float* backdrop, fz_color_params params) {
    float rgb[3];
    ManagedDevice* device = managed(dev);
    if (convertColour(ctx, device, space, backdrop, rgb)) {
        fz_begin_mask(ctx, device->target, area, luminosity, fz_device_rgb(ctx), rgb, params);
    } else {
        fz_begin_mask(ctx, device->target, area, luminosity, space, backdrop, params);
    }
}

void beginGroup(fz_context* ctx, fz_device* dev, fz_rect area, fz_colorspace* space, int isolated,
                int knockout, int blendMode, float alpha) {
    ManagedDevice* device = managed(dev);
    if (converterFor(ctx, device, space)) {
        space = fz_device_rgb(ctx); // its content arrives converted already
    }
    fz_begin_group(ctx, device->target, area, space, isolated, knockout, blendMode, alpha);
}

// Everything else passes through as it came.
void clipPath(fz_context* ctx, fz_device* dev, const fz_path* path, int evenOdd, fz_matrix ctm,
              fz_rect scissor) {
    fz_clip_path(ctx, managed(dev)->target, path, evenOdd, ctm, scissor);
}
void clipStrokePath(fz_context* ctx, fz_device* dev, const fz_path* path,
                    const fz_stroke_state* stroke, fz_matrix ctm, fz_rect scissor) {
    fz_clip_stroke_path(ctx, managed(dev)->target, path, stroke, ctm, scissor);
}
void clipText(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix ctm,
              fz_rect scissor) {
    fz_clip_text(ctx, managed(dev)->target, text, ctm, scissor);
}
void clipStrokeText(fz_context* ctx, fz_device* dev, const fz_text* text,
                    const fz_stroke_state* stroke, fz_matrix ctm, fz_rect scissor) {
    fz_clip_stroke_text(ctx, managed(dev)->target, text, stroke, ctm, scissor);
}
void ignoreText(fz_context* ctx, fz_device* dev, const fz_text* text, fz_matrix ctm) {
    fz_ignore_text(ctx, managed(dev)->target, text, ctm);
}
void clipImageMask(fz_context* ctx, fz_device* dev, fz_image* image, fz_matrix ctm,
                   fz_rect scissor) {
    fz_clip_image_mask(ctx, managed(dev)->target, image, ctm, scissor);
}
void popClip(fz_context* ctx, fz_device* dev) {
    fz_pop_clip(ctx, managed(dev)->target);
}
void endMask(fz_context* ctx, fz_device* dev) {
    fz_end_mask(ctx, managed(dev)->target);
}
void endGroup(fz_context* ctx, fz_device* dev) {
    fz_end_group(ctx, managed(dev)->target);
}
int beginTile(fz_context* ctx, fz_device* dev, fz_rect area, fz_rect view, float xstep, float ystep,
              fz_matrix ctm, int id) {
    return fz_begin_tile_id(ctx, managed(dev)->target, area, view, xstep, ystep, ctm, id);
}
void endTile(fz_context* ctx, fz_device* dev) {
    fz_end_tile(ctx, managed(dev)->target);
}
void renderFlags(fz_context* ctx, fz_device* dev, int set, int clear) {
    fz_render_flags(ctx, managed(dev)->target, set, clear);
}
void setDefaultColorspaces(fz_context* ctx, fz_device* dev, fz_default_colorspaces* spaces) {
    fz_set_default_colorspaces(ctx, managed(dev)->target, spaces);
}
void beginLayer(fz_context* ctx, fz_device* dev, const char* name) {
    fz_begin_layer(ctx, managed(dev)->target, name);
}
void endLayer(fz_context* ctx, fz_device* dev) {
    fz_end_layer(ctx, managed(dev)->target);
}

} // namespace

fz_device* newColourManagedDevice(fz_context* ctx, fz_device* target, fz_irect area,
                                  CMYKSource* source) {
    ManagedDevice* device = fz_new_derived_device(ctx, ManagedDevice);
    device->target = target;
    device->source = source;
    device->area = area;
    device->super.hints = target->hints;
    device->super.flags = target->flags;
    device->super.fill_path = fillPath;
    device->super.stroke_path = strokePath;
    device->super.clip_path = clipPath;
    device->super.clip_stroke_path = clipStrokePath;
    device->super.fill_text = fillText;
    device->super.stroke_text = strokeText;
    device->super.clip_text = clipText;
    device->super.clip_stroke_text = clipStrokeText;
    device->super.ignore_text = ignoreText;
    device->super.fill_shade = fillShade;
    device->super.fill_image = fillImage;
    device->super.fill_image_mask = fillImageMask;
    device->super.clip_image_mask = clipImageMask;
    device->super.pop_clip = popClip;
    device->super.begin_mask = beginMask;
    device->super.end_mask = endMask;
    device->super.begin_group = beginGroup;
    device->super.end_group = endGroup;
    device->super.begin_tile = beginTile;
    device->super.end_tile = endTile;
    device->super.render_flags = renderFlags;
    device->super.set_default_colorspaces = setDefaultColorspaces;
    device->super.begin_layer = beginLayer;
    device->super.end_layer = endLayer;
    return &device->super;
}

} // namespace quillet::mupdf
