// The engine's own view of footage, as render operations return it.
#ifndef STRATUM_VX_CLIP_H
#define STRATUM_VX_CLIP_H

namespace VX {

// A sequence of frames that a render operation made. The caller that receives one owns it.
class IClip
{
public:
    virtual ~IClip();
};

} // namespace VX

#endif
