#include "bench/pictures/PictureFile.h"

#include <png.h>

namespace {

using namespace kel::bench;

png_image ImageOf(int width, int height) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_BGR;
    return image;
}

FileBytes Encode(const Photograph& photograph) {
    png_image image = ImageOf(photograph.width, photograph.height);
    FileBytes file(PNG_IMAGE_PNG_SIZE_MAX(image));
    png_alloc_size_t size = file.size();
    png_image_write_to_memory(&image, file.data(), &size, /*to 8 bits*/ 0, photograph.pixels.data(), /*row*/ 0,
                              nullptr);
    file.resize(size);
    return file;
}

// A negative step is how the library is told of rows from the bottom.
void Decode(std::span<const unsigned char> file, const Rows& rows) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    png_image_begin_read_from_memory(&image, file.data(), file.size());
    image.format = PNG_FORMAT_BGR;
    png_image_finish_read(&image, nullptr, rows.memory, -static_cast<png_int_32>(rows.RowBytes()), nullptr);
}

const Enter<PictureFile> entered{{"libpng", "PNG 2 MP", false, &Encode, &Decode}};

} // namespace
