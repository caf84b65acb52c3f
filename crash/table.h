#pragma once

#include <iosfwd>
#include <vector>

#include "crash/sweep.h"

namespace crash {

/// Counts of outcomes, a line for each kind of operation and a column for each disturbance, and
/// the losses with what they mean.
void printTable(std::ostream& out, const std::vector<Row>& rows);

/// A line for each row that has findings, or for each one.
void printRows(std::ostream& out, const std::vector<Row>& rows, bool all);

bool hasFault(const std::vector<Row>& rows);

} // namespace crash
