// What the object classes share beside QObject.
#ifndef ORRERY_SBK_CLEANER_H
#define ORRERY_SBK_CLEANER_H

// A second base of the object classes that is nothing but a virtual destructor. The destructors of these classes tell
// whoever boots the library for a scripting language that the object is going.
class SbkCleaner
{
public:
    virtual ~SbkCleaner();
};

#endif
