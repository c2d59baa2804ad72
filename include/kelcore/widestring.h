#pragma once

/// @file
/// The two text types that every interface of the library names.

#include <string>

/// Bytes in the process's ANSI code page.
using NarrowString = std::string;

/// Text of 16-bit units. It is the carrier of every name, path and message; units are UTF-16 where the text is Unicode.
using WideString = std::basic_string<unsigned short>;
