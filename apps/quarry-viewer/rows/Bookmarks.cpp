#include "Bookmarks.h"

namespace quarry::viewer {

Bookmarks::Bookmarks(qint64 step)
    : m_step(qMax<qint64>(step, 1))
{
}

void Bookmarks::clear()
{
    m_marks.clear();
    m_done = true;
}

void Bookmarks::walk()
{
    m_marks.clear();
    m_done = false;
}

PageStart Bookmarks::nextStep() const
{
    PageStart next = m_marks.isEmpty() ? PageStart() : m_marks.last();
    next.offset = m_step - 1;
    return next;
}

void Bookmarks::add(const PageStart &mark)
{
    if (mark.keyAfter.isEmpty())
        m_done = true;
    else
        m_marks.append(mark);
}

PageStart Bookmarks::start(qint64 first) const
{
    const qint64 before = qMin<qint64>(first / m_step, m_marks.size());
    if (before == 0)
        return {first, {}, {}};
    PageStart from = m_marks.at(before - 1);
    from.offset = first - before * m_step;
    return from;
}

} // namespace quarry::viewer
