// The pixel library as the engine uses it: loaded on first use, its errors translated into the engine's own.
#pragma once

#include <QString>
#include <engine/errors/arguments.h>
#include <engine/errors/message.h>
#include <engine/files/paths.h>
#include <engine/pixels/pixels.h>
#include <functional>
#include <new>

namespace orrery {

// STRM_ExternalException says what could not be loaded.
pixels::Library& pixelLibrary();

// Rethrows what the pixel library threw: STRM_BadFile for a file, STRM_OperationFailed for a region, STRM_BadAlloc,
// and STRM_LumenError for anything else of the standard library; `where` is put before the text ("frame 12 of ...").
// To be called while an exception is handled.
[[noreturn]] void rethrowPixelError(const QString& where);

template <class Function>
auto withPixels(const QString& where, Function function)
{
    try {
        return function(pixelLibrary());
    } catch (...) {
        rethrowPixelError(where);
    }
}

} // namespace orrery
