// The enumerations of the object model.
#ifndef ORRERY_ENUMERATIONS_H
#define ORRERY_ENUMERATIONS_H

// How the fields of interlaced footage make up frames.
enum InterlaceMode {
    NotInterlaced = 0,
    UpperFieldFirst = 1,
    LowerFieldFirst = 2,
    _32PulldownUpFirstAA = 3,
    _32PulldownUpFirstBB = 4,
    _32PulldownUpFirstBC = 5,
    _32PulldownUpFirstCD = 6,
    _32PulldownUpFirstDD = 7,
    _32PulldownLoFirstAA = 8,
    _32PulldownLoFirstBB = 9,
    _32PulldownLoFirstBC = 10,
    _32PulldownLoFirstCD = 11,
    _32PulldownLoFirstDD = 12,
    InvalidInterlaceMode = 13
};

// The encoding of footage.
enum Colorspace { LinearColorspace = 0, LogColorspace = 1, PanalogColorspace = 2 };

// How rendered shapes are coloured: white, each layer in its matte colour, or each layer in a grey of its own.
enum ColorizeOutput { Grayscale = 0, ByMatteColor = 1, ByLayer = 2 };

// The depth to which footage is converted when it is read: as it is, 32-bit float, or 8 bits.
enum ColorConversion { NoneConversion = 0, FloatConversion = 1, _8BitConversion = 2 };

#endif
