#pragma once

#include "LogSelect.h"

#include <QList>

namespace quarry::viewer {

// Where the rows of an order stand every `step` rows, found by walking the
// order once a step at a time: a jump to any row then starts from the mark
// before it and makes the server walk fewer than `step` rows, where an
// offset from the first row would make it walk them all. Mark i stands
// after row (i + 1) * step - 1. The marks hold for the order they were
// walked in alone.
class Bookmarks
{
public:
    explicit Bookmarks(qint64 step);

    qint64 step() const { return m_step; }
    // Forgets the marks, and walks nowhere.
    void clear();
    // Forgets the marks, and walks the order anew from its first row.
    void walk();
    // Whether the walk has reached the last row or was stopped (or none
    // was started).
    bool isDone() const { return m_done; }
    // The walk ends where it is: the marks so far stay.
    void stop() { m_done = true; }
    // Where the next step reads its one row, the row that is the next mark.
    PageStart nextStep() const;
    // The row of the next step, as the start of the rows after it; none (no
    // key): the order has no more rows, and the walk is done.
    void add(const PageStart &mark);
    // Where the rows from row `first` on start: after the last mark before
    // it and the rows between, or after `first` rows from the first.
    PageStart start(qint64 first) const;

private:
    const qint64 m_step;
    QList<PageStart> m_marks;
    bool m_done = true;
};

} // namespace quarry::viewer
