#pragma once

/// @file
/// Lists of images of one size.

#include <kelcore/export.h>
#include <kelcore/platform.h>

/// The owner of an image list of the common controls. The list is destroyed when another one is attached and at the
/// end.
class KELCORE_API ImageList {
public:
    /// Holds nothing.
    ImageList();
    ImageList(const ImageList&) = delete;
    ImageList& operator=(const ImageList&) = delete;
    virtual ~ImageList();

    /// Destroys what is held and takes @p list over.
    void Attach(HIMAGELIST list);
    /// Destroys the list (`ImageList_Destroy`), if there is one; nothing is held then.
    void Destroy();
    /// Becomes a new list for images of @p cx x @p cy pixels (`ImageList_Create`).
    /// @param flags ILC_ values. @param initial how many images to make room for. @param grow by how many to grow.
    /// @return false on failure; nothing is held then.
    bool Create(int cx, int cy, unsigned int flags, int initial, int grow);
    /// Becomes a list of one image, that of @p second drawn (@p dx, @p dy) off that of @p first (`ImageList_Merge`).
    /// @return false on failure; nothing is held then.
    bool Create(const ImageList& first, int firstIndex, const ImageList& second, int secondIndex, int dx, int dy);
    /// Draws as @p parameters say (`ImageList_DrawIndirect`). @param parameters size and list are filled in here.
    bool DrawIndirect(IMAGELISTDRAWPARAMS& parameters);
    /// @return a copy, which is the caller's to delete; null on failure.
    ImageList* Duplicate();
    /// @return a list of one image, made of two as by Create, which is the caller's to delete; null on failure.
    ImageList* Merge(int index, const ImageList& other, int otherIndex, int dx, int dy);
    /// The size of the images in pixels, (0, 0) on failure.
    SIZE GetIconSize();

    /// Shows the image that is being dragged in @p window (null: on the screen). @param position relative to the
    /// window's left top corner, its frame included.
    static bool DragEnter(HWND window, const POINT& position);
    /// Hides the image that is being dragged.
    static bool DragLeave(HWND window);

    HIMAGELIST m_hImageList; ///< null for none
};
