#pragma once

#include <string>

/// @file
/// The module that this code lies in.
namespace kel::toolkit {

/// Keeps the module in the process for good. Whoever loads the toolkit frees it again while controls live, and the last
/// of them is released by a call into it: there is no moment at which it could let itself be unloaded.
void StayLoaded();

/// The path of the module's file; empty if the system does not tell.
std::string OwnPath();

} // namespace kel::toolkit
