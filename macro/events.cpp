#include "macro/events.h"

namespace {

const int messageBoxEventType = 1007;
const int externalCallEventType = 1010;

} // namespace

UEventBase::UEventBase(int type) : QEvent(static_cast<QEvent::Type>(type)), reserved(0) {}

UEventBase::~UEventBase() = default;

UMessageBoxEvent::UMessageBoxEvent(const QString &messageText, int first, int second)
    : UEventBase(messageBoxEventType),
      text(messageText),
      param1(first),
      param2(second)
{
}

UMessageBoxEvent::~UMessageBoxEvent() = default;

UExternalFuncCallEvent::UExternalFuncCallEvent(const QString &name, InterfaceAll *argument)
    : UEventBase(externalCallEventType),
      flag(true),
      funcName(name),
      arg(argument)
{
}

UExternalFuncCallEvent::~UExternalFuncCallEvent() = default;
