#pragma once

#include "tests/stream/SampleObjects.h"

/// A graph with one of everything the format knows: all typed values in two versions, shared and null pointers, cycles,
/// contained objects, value back-references reached by value and by reference. Ended by SampleObject::EndAll.
/// @param longText the size of one text, to make the stream longer than a block.
inline SampleGroup* BuildSampleGraph(std::size_t longText) {
    auto* values = new SampleValues;
    values->flag = true;
    values->letter = '\xE9';
    values->byte = 200;
    values->small = -2;
    values->unit = 0x1234;
    values->number = 258;
    values->count = 0xFEDCBA98u;
    values->length = -7;
    values->mask = 0x80000001ul;
    values->ratio = 0.25f;
    values->value = -1e300;
    values->big = 0x0123456789ABCDEF;
    values->name = NarrowString("zero\0inside", 11);
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
