// The engine's enumerations that parameters hold. Each is known to Qt's meta-type system under its name as a 32-bit
// integer, so that a variant can hold one.
#ifndef STRATUM_ENUMERATIONS_H
#define STRATUM_ENUMERATIONS_H

enum VX_CONTOUR_TYPE { VX_CONTOUR_XSPLINE = 0, VX_CONTOUR_BEZIER = 1 };

enum VX_STEREO_MODE { VX_STEREO_MONO = 0, VX_STEREO_PAIR = 1, VX_STEREO_MULTI_VIEW = 2 };

enum VX_CLIP_MODE { VX_CLIP_SEQUENCE = 0, VX_CLIP_RENDERED = 1 };

enum VX_REMOVESOURCE_MODE { VX_REMOVESOURCE_BEFORE = 0, VX_REMOVESOURCE_AFTER = 1, VX_REMOVESOURCE_BOTH = 2 };

enum VX_ILLUMINATION_MODEL { VX_ILLUMINATION_NONE = 0, VX_ILLUMINATION_GAIN = 1, VX_ILLUMINATION_GAIN_OFFSET = 2 };

enum VX_BlendMode { VX_BlendAdd = 0, VX_BlendSubtract = 1, VX_BlendIntersect = 2 };

enum VX_LUMINANCE_MODEL { VX_LUMINANCE_REC709 = 0, VX_LUMINANCE_AVERAGE = 1, VX_LUMINANCE_MAXIMUM = 2 };

enum VX_FILL_ALGORITHM { VX_FILL_NEAREST_FRAME = 0, VX_FILL_BLEND_FRAMES = 1 };

enum VX_INTERLACE_MODE { VX_INTERLACE_NONE = 0, VX_INTERLACE_UPPER_FIRST = 1, VX_INTERLACE_LOWER_FIRST = 2 };

// How a tracked patch may move from frame to frame.
enum TrackModel { TrackTranslation = 0, TrackAffine = 1, TrackPerspective = 2 };

#endif
