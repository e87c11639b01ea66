// Text made safe for use as one component of a file name.
#ifndef FUNDO_FS_PERCENT_ESCAPED_STRING_H
#define FUNDO_FS_PERCENT_ESCAPED_STRING_H

#include <QString>

namespace Fundo {

// The string holds the escaped text: characters that a file system may refuse are written %XX, the hexadecimal value
// of each of their UTF-8 bytes. An escaped text given again is escaped again (the % itself becomes %25), so that
// unescaping always gives back what was put in.
class FSPercentEscapedString : public QString
{
public:
    enum Safety {
        AnySystem = 0,  // safe on every file system: escapes \ / : * ? " < > | %, control characters, a leading or
                        // trailing blank or point
        ThisSystem = 1, // safe on this system: escapes / % and the NUL
    };

    FSPercentEscapedString();
    FSPercentEscapedString(const QString& text, const Safety& safety);

    // The text as it was before it was escaped.
    QString unescaped() const;
};

} // namespace Fundo

#endif
