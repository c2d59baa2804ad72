#include "bench/pictures/PictureFile.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace {

using namespace kel::bench;

FileBytes Encode(const Photograph& photograph) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(photograph.width);
    info.image_height = static_cast<JDIMENSION>(photograph.height);
    info.input_components = 3;
    info.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 90, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < photograph.height; ++y) {
        JSAMPROW row = const_cast<JSAMPROW>(photograph.Row(y));
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    FileBytes file(memory, memory + size);
    std::free(memory);
    return file;
}

void Decode(std::span<const unsigned char> file, const Rows& rows) {
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), file.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_BGR;
    jpeg_start_decompress(&info);
    std::vector<JSAMPROW> targets;
    for (int y = 0; y < rows.height; ++y)
        targets.push_back(rows.Row(y));
    while (info.output_scanline < info.output_height)
        jpeg_read_scanlines(&info, targets.data() + info.output_scanline, info.output_height - info.output_scanline);
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
}

const Enter<PictureFile> entered{{"libjpeg", "JPEG 12 MP", false, &Encode, &Decode}};

} // namespace
