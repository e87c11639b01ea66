// What is seen of a patch, block by block: a block that does not look like itself is hidden by something, and one that
// lies elsewhere than the rest does not move as one plane with it.
#pragma once

#include "patch.h"

namespace pixels {

// Over the pixels of a block that are in view: the frame's residual under the brightness of the whole patch, the
// patch's value, and its gradient in pixels of the level.
struct BlockSums
{
    float count = 0, r = 0, rr = 0, gx = 0, gy = 0, gxx = 0, gxy = 0, gyy = 0, gxr = 0, gyr = 0, p = 0, pp = 0;
};

// How a patch looks in a frame.
struct BlockLooks
{
    std::vector<float> belief;   // by block, 0 to 1: how far it is what the patch shows there
    std::vector<float> mismatch; // by block: what differs, noise apart, as a share of the block's contrast
    double seen = 0;             // the share of the patch's pixels that are believed
    double astray = 0;           // the share of those that lie elsewhere than the rest of the patch
    double texture = 0;          // the share of the patch's pixels in believed blocks whose place can be told
};

// `usualMismatch` is that of the frames before, by which a block may differ again.
BlockLooks judge(const std::vector<BlockSums>& blocks, const BlockGrid& grid, double pixels, double gain, double noise,
                 const std::vector<float>& usualMismatch);

// The same beliefs less the blocks beside those that are hidden, which may be hidden next.
std::vector<float> shrunk(const std::vector<float>& belief, const BlockGrid& grid);

} // namespace pixels
