// Pixel work for bench/scans.sh, built by that script with g++ (libvips and libtiff):
//
//   scan-pixels age IN OUT.jpg [--tint R,G,B] [--grain SIGMA] [--blur SIGMA] [--angle DEG]
//                              [--quality Q] [--seed N]
//       a rendered page as a scanner returns it: slightly soft, turned, on tinted paper
//       (the tint multiplies, so ink stays dark), with paper grain, saved as a JPEG;
//   scan-pixels bilevel IN OUT.tif
//       the page thresholded at mid-grey to 1 bit and saved as a one-strip CCITT G4 TIFF;
//       prints the byte count of the G4 data;
//   scan-pixels ssim A B [X,Y,W,H ...]
//       mean SSIM of the luma of two renders (Gaussian window, sigma 1.5), over the given
//       rectangles in pixels (weighted by area), or over the whole page; prints it.
#include <vips/vips8>

#include <tiffio.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using vips::VImage;

namespace {

[[noreturn]] void fail(const std::string& what)
{
    std::fprintf(stderr, "scan-pixels: %s\n", what.c_str());
    std::exit(1);
}

std::vector<double> numbers(const std::string& text)
{
    std::vector<double> out;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(',', start);
        if (end == std::string::npos) end = text.size();
        out.push_back(std::atof(text.substr(start, end - start).c_str()));
        start = end + 1;
    }
    return out;
}

VImage load_srgb(const char* path)
{
    VImage in = VImage::new_from_file(path, VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL));
    if (in.has_alpha()) in = in.flatten(VImage::option()->set("background", std::vector<double>{255, 255, 255}));
    return in.colourspace(VIPS_INTERPRETATION_sRGB);
}

int age(int argc, char** argv)
{
    if (argc < 4) fail("age IN OUT.jpg [options]");
    std::vector<double> tint{255, 255, 255};
    double grain = 0, blur = 0, angle = 0;
    int quality = 85, seed = 1;
    for (int i = 4; i + 1 < argc; i += 2) {
        std::string key = argv[i];
        const char* value = argv[i + 1];
        if (key == "--tint") tint = numbers(value);
        else if (key == "--grain") grain = std::atof(value);
        else if (key == "--blur") blur = std::atof(value);
        else if (key == "--angle") angle = std::atof(value);
        else if (key == "--quality") quality = std::atoi(value);
        else if (key == "--seed") seed = std::atoi(value);
        else fail("unknown option " + key);
    }
    if (tint.size() != 3) fail("--tint takes R,G,B");

    VImage page = load_srgb(argv[2]).cast(VIPS_FORMAT_FLOAT);
    if (blur > 0) page = page.gaussblur(blur, VImage::option()->set("precision", VIPS_PRECISION_FLOAT));
    if (angle != 0) {
        // Turned about the centre on white paper, cropped back to the page's size.
        int width = page.width(), height = page.height();
        page = page.rotate(angle, VImage::option()
                                      ->set("background", std::vector<double>{255, 255, 255})
                                      ->set("interpolate", vips::VInterpolate::new_from_name("bilinear")));
        page = page.crop((page.width() - width) / 2, (page.height() - height) / 2, width, height);
    }
    page = page * std::vector<double>{tint[0] / 255, tint[1] / 255, tint[2] / 255};
    if (grain > 0) {
        // Grain a little coarser than one pixel, as paper fibre and sensor noise look at 300 DPI.
        VImage noise = VImage::gaussnoise(page.width(), page.height(),
                                          VImage::option()->set("sigma", grain)->set("mean", 0.0)->set("seed", seed));
        noise = noise.gaussblur(0.6, VImage::option()->set("precision", VIPS_PRECISION_FLOAT)) * 1.6;
        page = page + noise;
    }
    page = (page > 255).ifthenelse(255.0, page);
    page = (page < 0).ifthenelse(0.0, page).cast(VIPS_FORMAT_UCHAR).copy(
        VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB)->set("xres", 300 / 25.4)->set("yres", 300 / 25.4));
    page.jpegsave(argv[3], VImage::option()->set("Q", quality)->set("strip", true));
    return 0;
}

int bilevel(int argc, char** argv)
{
    if (argc != 4) fail("bilevel IN OUT.tif");
    VImage grey = VImage::new_from_file(argv[2]).colourspace(VIPS_INTERPRETATION_B_W);
    if (grey.bands() > 1) grey = grey.extract_band(0);
    VImage ink = (grey < 128);  // 255 where the page is dark
    size_t size = 0;
    auto* pixels = static_cast<unsigned char*>(ink.write_to_memory(&size));
    const int width = ink.width(), height = ink.height();

    TIFF* tif = TIFFOpen(argv[3], "w");
    if (!tif) fail(std::string("cannot write ") + argv[3]);
    TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tif, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);  // 1 bits are ink
    TIFFSetField(tif, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, height);
    TIFFSetField(tif, TIFFTAG_XRESOLUTION, 300.0);
    TIFFSetField(tif, TIFFTAG_YRESOLUTION, 300.0);
    TIFFSetField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    std::vector<unsigned char> row((width + 7) / 8);
    for (int y = 0; y < height; y++) {
        std::fill(row.begin(), row.end(), 0);
        const unsigned char* line = pixels + size_t(y) * width;
        for (int x = 0; x < width; x++)
            if (line[x]) row[x >> 3] |= 0x80 >> (x & 7);
        if (TIFFWriteScanline(tif, row.data(), y, 0) < 0) fail("G4 encoding failed");
    }
    TIFFClose(tif);
    g_free(pixels);

    tif = TIFFOpen(argv[3], "r");
    if (!tif) fail(std::string("cannot read back ") + argv[3]);
#if TIFFLIB_VERSION >= 20191103
    uint64_t* counts = nullptr;
#else
    uint32* counts = nullptr;
#endif
    if (TIFFNumberOfStrips(tif) != 1 || !TIFFGetField(tif, TIFFTAG_STRIPBYTECOUNTS, &counts))
        fail("expected one strip");
    std::printf("%llu\n", static_cast<unsigned long long>(counts[0]));
    TIFFClose(tif);
    return 0;
}

VImage luma(const char* path)
{
    return load_srgb(path).colourspace(VIPS_INTERPRETATION_B_W).extract_band(0).cast(VIPS_FORMAT_FLOAT);
}

// Sum of the SSIM map over a region, and its pixel count.
std::pair<double, double> ssim_sum(VImage a, VImage b)
{
    const double c1 = (0.01 * 255) * (0.01 * 255), c2 = (0.03 * 255) * (0.03 * 255);
    auto blur = [](VImage image) {
        return image.gaussblur(1.5, VImage::option()->set("precision", VIPS_PRECISION_FLOAT)->set("min_ampl", 0.01));
    };
    VImage mu_a = blur(a), mu_b = blur(b);
    VImage var_a = blur(a * a) - mu_a * mu_a;
    VImage var_b = blur(b * b) - mu_b * mu_b;
    VImage cov = blur(a * b) - mu_a * mu_b;
    VImage map = ((mu_a * mu_b * 2 + c1) * (cov * 2 + c2)) / ((mu_a * mu_a + mu_b * mu_b + c1) * (var_a + var_b + c2));
    double pixels = double(map.width()) * map.height();
    return {map.avg() * pixels, pixels};
}

int ssim(int argc, char** argv)
{
    if (argc < 4) fail("ssim A B [X,Y,W,H ...]");
    VImage a = luma(argv[2]), b = luma(argv[3]);
    // Renders of two files may differ by a pixel in size: compare what both have.
    int width = std::min(a.width(), b.width()), height = std::min(a.height(), b.height());
    a = a.crop(0, 0, width, height).copy_memory();
    b = b.crop(0, 0, width, height).copy_memory();
    double sum = 0, pixels = 0;
    if (argc == 4) {
        auto [s, n] = ssim_sum(a, b);
        sum += s;
        pixels += n;
    }
    for (int i = 4; i < argc; i++) {
        std::vector<double> r = numbers(argv[i]);
        if (r.size() != 4) fail("a rectangle is X,Y,W,H");
        int x = std::clamp(int(r[0]), 0, width - 1), y = std::clamp(int(r[1]), 0, height - 1);
        int w = std::min(int(r[2]), width - x), h = std::min(int(r[3]), height - y);
        if (w < 16 || h < 16) continue;
        auto [s, n] = ssim_sum(a.crop(x, y, w, h), b.crop(x, y, w, h));
        sum += s;
        pixels += n;
    }
    if (pixels == 0) fail("no region to compare");
    std::printf("%.4f\n", sum / pixels);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (VIPS_INIT(argv[0])) vips_error_exit(nullptr);
    if (argc < 2) fail("age | bilevel | ssim");
    std::string command = argv[1];
    try {
        if (command == "age") return age(argc, argv);
        if (command == "bilevel") return bilevel(argc, argv);
        if (command == "ssim") return ssim(argc, argv);
    } catch (const vips::VError& error) {
        fail(error.what());
    }
    fail("unknown command " + command);
}
