// What is saved of clips.
#pragma once

#include "json.h"

#include <engine/stratum/manager.h>
#include <orrery/clip.h>

namespace orrery {

// All that is saved of a clip: name, streams, mapping, sizes, rates, colour parameters, animated values. The lock is
// held for the first, not for the second.
Json writeClip(const Clip& clip);
std::unique_ptr<Clip> readClip(const JsonReader& reader, const boost::shared_ptr<STRM_ProjectManager>& manager);

} // namespace orrery
