#pragma once

/// @file
/// The areas; each enters its jobs.

namespace kel::bench {

void AddCrcJobs();
void AddStreamJobs();
void AddGraphJobs();
void AddTextJobs();
void AddFormatJobs();
void AddPathJobs();
void AddDirJobs();
void AddThreadJobs();
void AddTimeJobs();
void AddRegistryJobs();
void AddModuleJobs();
void AddPixelJobs();
void AddLayerJobs(); ///< of the area "pixels" too
void AddGdiJobs();
void AddRegionJobs();
void AddFontJobs();
void AddPictureJobs();
void AddLoadJobs();  ///< of the area "pictures" too
void AddAlbumJobs(); ///< of the area "pictures" too

} // namespace kel::bench
