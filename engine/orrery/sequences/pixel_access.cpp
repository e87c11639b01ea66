// Loads the pixel library and translates its errors.

#include <engine/sequences/pixel_access.h>
#include <pixels_loader.h>

namespace orrery {

pixels::Library& pixelLibrary()
{
    try {
        return pixels::library();
    } catch (const pixels::LoadError& error) {
        raise<STRM_ExternalException>(asText(error.what()));
    }
}

void rethrowPixelError(const QString& where)
{
    const auto with = [&where](const char* problem) {
        return where.isEmpty() ? asText(problem) : where + QLatin1String(": ") + asText(problem);
    };
    try {
        throw;
    } catch (const STRM_Exception&) {
        throw;
    } catch (const pixels::FileError& error) {
        raise<STRM_BadFile>(with(error.what()));
    } catch (const pixels::RegionError& error) {
        raise<STRM_OperationFailed>(with(error.what()));
    } catch (const std::bad_alloc&) {
        raise<STRM_BadAlloc>(with("there is not enough memory for the image"));
    } catch (const std::exception& error) {
        raise<STRM_LumenError>(with(error.what()));
    }
}

} // namespace orrery
