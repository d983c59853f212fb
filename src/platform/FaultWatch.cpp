#include "platform/FaultWatch.h"

#include <utility>

namespace quarry {

namespace {

thread_local FaultWatch *activeWatch = nullptr;

} // namespace

FaultWatch::FaultWatch()
    : m_previous(std::exchange(activeWatch, this))
{
}

FaultWatch::~FaultWatch()
{
    activeWatch = m_previous;
}

void FaultWatch::report(const QuarryError &fault)
{
    if (activeWatch && !activeWatch->m_first)
        activeWatch->m_first = fault;
}

} // namespace quarry
