// Tells harmless property lists from those that cost their reader far more than their size: nested thousands
// of levels deep, or, in the binary form, with objects that refer to the same ones over and over. The library
// that reads them has no such bounds. Pure functions; any thread.
#pragma once

#include <QByteArray>

namespace orlix {

inline constexpr int deepestPropertyList = 64;

bool isBinaryPropertyList(const QByteArray& bytes);

/// False for a list that nests deeper than `deepestPropertyList`, refers to itself, or unfolds to more than 4
/// MiB, where a value counts 64 bytes and its text or data as much again as it is long. Also false for a
/// binary list whose structure is broken.
bool isHarmlessPropertyList(const QByteArray& bytes);

}  // namespace orlix
