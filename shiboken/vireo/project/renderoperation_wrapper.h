// What the three render operations that scripts make have in common: nothing but a constructor.
#ifndef VIREO_PROJECT_RENDEROPERATION_WRAPPER_H
#define VIREO_PROJECT_RENDEROPERATION_WRAPPER_H

#include "module.h"

namespace vireo {

template <class TWrapper>
constexpr auto renderOperationMaking = binding::constructors(binding::Form::Ignored,
                                                             binding::signature(binding::constructs<TWrapper>));

constexpr std::tuple<> noMembers;

template <class T, class TWrapper>
binding::ClassTable renderOperationTable()
{
    binding::ClassTable kind = binding::objectClass<T, TWrapper, renderOperationMaking<TWrapper>, noMembers>();
    kind.base = binding::wrapperType<RenderOperation>();
    return kind;
}

} // namespace vireo

#endif
