#pragma once

#include "tests/stream/SampleObjects.h"

/// A graph with one of everything the format knows: all typed values in two versions, shared and null pointers, cycles,
/// contained objects, value back-references reached by value and by reference. Ended by SampleObject::EndAll.
/// @param longText the size of one text, to make the stream longer than a block.
inline SampleGroup* BuildSampleGraph(std::size_t longText) {
    auto* values = new SampleValues;
    values->values = {true,
                      '\xE9',
                      200,
                      -2,
                      0x1234,
                      258,
                      0xFEDCBA98u,
                      -7,
                      0x80000001ul,
                      0.25f,
                      -1e300,
                      0x0123456789ABCDEF,
                      NarrowString("zero\0inside", 11)};
    values->title = {0x4E2D, 0x6587, 0xD83D, 0xDE00};
    auto* old = new SampleValues(*values);
    old->version = 1;

    auto* first = new SampleNode;
    auto* second = new SampleNode;
    first->left = second;
    first->right = values;
    first->number = 1;
    first->text.assign(longText, 'x');
    second->left = first;
    second->right = second;
    second->number = -1;

    auto* caption = new SampleCaption;
    caption->text = "shared";
    auto* equal = new SampleCaption(*caption);

    auto* group = new SampleGroup;
    group->caption.text = "shared";
    group->members = {values, nullptr, first, old, second, values, caption, equal, caption};
    return group;
}
