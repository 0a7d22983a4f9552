#include "clips/sheet/Picture.h"

#include <stdexcept>
#include <string>

#include <png.h>

namespace quiverly::clips {

Picture::Picture(std::size_t width, std::size_t height, std::vector<Colour> palette)
    : columns(width), palette(std::move(palette)), pixels(width * height) {}

void Picture::save(const std::filesystem::path& file) const {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(columns);
    image.height = static_cast<png_uint_32>(height());
    image.format = PNG_FORMAT_RGB_COLORMAP;
    image.colormap_entries = static_cast<png_uint_32>(palette.size());
    if (png_image_write_to_file(&image, file.c_str(), 0, pixels.data(), 0, palette.data()) == 0) {
        throw std::runtime_error(file.string() + ": " + static_cast<const char*>(image.message));
    }
}

} // namespace quiverly::clips
