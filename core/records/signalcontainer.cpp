#include "core/records/signalcontainer.h"

SignalContainer::~SignalContainer() = default;

SignalContainer::SignalContainer(const SignalContainer & /*other*/) : SignalContainer() {}

SignalContainer &SignalContainer::operator=(const SignalContainer & /*other*/)
{
    return *this;
}
