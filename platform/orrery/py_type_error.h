// What the library throws when a value that came from a script has a type that it cannot use.
#ifndef ORRERY_PY_TYPE_ERROR_H
#define ORRERY_PY_TYPE_ERROR_H

#include <stdexcept>

class PyTypeError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    ~PyTypeError() noexcept override;
};

#endif
