#include "core/records/signalcontainer.h"

SignalContainer::~SignalContainer() = default;

SignalContainer::SignalContainer(const SignalContainer & /*other*/) : SignalContainer() {}

SignalContainer &SignalContainer::operator=(const SignalContainer & /*other*/)
{
    // Connections stay with the container that they were made for.
    return *this;
}
