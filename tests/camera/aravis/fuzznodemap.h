/// \file
/// The node map of a real camera under hostile descriptions and answers.
#pragma once

#include <cstddef>
#include <cstdint>

/// A camera's description file up to the first zero byte; behind it what its registers answer. Reads, verifies and
/// writes every node. Returns, whatever the bytes; a promise that is broken ends the program. Keeps to one thread and
/// leaves nothing behind that the next run would see.
void FuzzAravisNodeMap(const uint8_t *pData, std::size_t nSize);
