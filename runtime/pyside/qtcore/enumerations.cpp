// The enumerations of the module, but for QEvent.Type, and the namespace Qt that most of them lie in.
#include "module.h"

namespace QtCore {

namespace {

constexpr EnumerationItem connectionTypes[] = {{"AutoConnection", Qt::AutoConnection},
                                               {"DirectConnection", Qt::DirectConnection},
                                               {"QueuedConnection", Qt::QueuedConnection},
                                               {"BlockingQueuedConnection", Qt::BlockingQueuedConnection},
                                               {"UniqueConnection", Qt::UniqueConnection}};
constexpr EnumerationItem orientations[] = {{"Horizontal", Qt::Horizontal}, {"Vertical", Qt::Vertical}};
constexpr EnumerationItem caseSensitivities[] = {{"CaseInsensitive", Qt::CaseInsensitive},
                                                 {"CaseSensitive", Qt::CaseSensitive}};
constexpr EnumerationItem sortOrders[] = {{"AscendingOrder", Qt::AscendingOrder},
                                          {"DescendingOrder", Qt::DescendingOrder}};
constexpr EnumerationItem checkStates[] = {
    {"Unchecked", Qt::Unchecked}, {"PartiallyChecked", Qt::PartiallyChecked}, {"Checked", Qt::Checked}};
constexpr EnumerationItem timeSpecs[] = {
    {"LocalTime", Qt::LocalTime}, {"UTC", Qt::UTC}, {"OffsetFromUTC", Qt::OffsetFromUTC}};
constexpr EnumerationItem dateFormats[] = {{"TextDate", Qt::TextDate}, {"ISODate", Qt::ISODate}};
constexpr EnumerationItem priorities[] = {{"IdlePriority", QThread::IdlePriority},
                                          {"LowestPriority", QThread::LowestPriority},
                                          {"LowPriority", QThread::LowPriority},
                                          {"NormalPriority", QThread::NormalPriority},
                                          {"HighPriority", QThread::HighPriority},
                                          {"HighestPriority", QThread::HighestPriority},
                                          {"TimeCriticalPriority", QThread::TimeCriticalPriority},
                                          {"InheritPriority", QThread::InheritPriority}};
constexpr EnumerationItem encodings[] = {
    {"CodecForTr", CodecForTr}, {"UnicodeUTF8", UnicodeUTF8}, {"DefaultCodec", DefaultCodec}};

bool registerNamespace(PyObject* module)
{
    static SbkObjectType type = {};
    PyTypeObject& space = type.super.ht_type;
    Py_REFCNT(&space) = 1;
    Py_TYPE(&space) = &SbkObjectType_Type;
    space.tp_name = "PySide.QtCore.Qt";
    space.tp_basicsize = sizeof(SbkObject);
    space.tp_flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_CHECKTYPES;
    space.tp_dealloc = &SbkDeallocWrapperWithPrivateDtor;
    types[SBK_QT_IDX] = &space;
    return Shiboken::ObjectType::introduceWrapperType(module, "Qt", "Qt", &type);
}

} // namespace

bool registerEnumerations(PyObject* module)
{
    return registerNamespace(module) && registerEnumeration<Qt::ConnectionType>(module, connectionTypes) &&
           registerEnumeration<Qt::Orientation>(module, orientations) &&
           registerEnumeration<Qt::CaseSensitivity>(module, caseSensitivities) &&
           registerEnumeration<Qt::SortOrder>(module, sortOrders) &&
           registerEnumeration<Qt::CheckState>(module, checkStates) &&
           registerEnumeration<Qt::TimeSpec>(module, timeSpecs) &&
           registerEnumeration<Qt::DateFormat>(module, dateFormats) &&
           registerEnumeration<QThread::Priority>(module, priorities) &&
           registerEnumeration<Encoding>(module, encodings);
}

} // namespace QtCore
