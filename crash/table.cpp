#include "crash/table.h"

#include <algorithm>
#include <iomanip>
#include <map>
#include <ostream>

namespace crash {

namespace {

using Counts = std::array<std::size_t, outcomeNames.size()>;

constexpr int nameWidth = 22;
constexpr int cellWidth = 18;

std::string cellOf(const Counts& counts) {
    std::string cell;
    for (const std::size_t count : counts) {
        cell += (cell.empty() ? "" : "/") + std::to_string(count);
    }
    return cell;
}

/// The line of the table that a row belongs to.
std::string lineOf(const Row& row) {
    return row.disturbance == Disturbance::storeIsGone
               ? "settings store asked"
               : operationNames[static_cast<std::size_t>(row.step.operation)];
}

std::string runsOf(const Row& row) {
    return row.runs ? "behind " + std::to_string(*row.runs) + " more runs" : "not in the end";
}

} // namespace

void printTable(std::ostream& out, const std::vector<Row>& rows) {
    std::map<std::string, std::map<Disturbance, Counts>> table;
    std::map<Disturbance, Counts> sums;
    std::map<Loss, std::size_t> losses;
    std::map<std::string, std::size_t> runs;
    for (const Row& row : rows) {
        const auto outcome = static_cast<std::size_t>(outcomeOf(row.findings));
        ++table[lineOf(row)][row.disturbance][outcome];
        ++sums[row.disturbance][outcome];
        if (row.disturbance != Disturbance::cancelled) {
            ++runs[runsOf(row)];
        }
        for (const Finding& finding : row.findings) {
            if (finding.loss) {
                ++losses[*finding.loss];
            }
        }
    }
    table["all"] = sums;
    out << "recovered/old kept/required loss/FAULT\n" << std::left << std::setw(nameWidth) << "";
    for (const auto& [disturbance, counts] : sums) {
        out << std::setw(cellWidth) << disturbanceNames[static_cast<std::size_t>(disturbance)];
    }
    out << "\n";
    for (const auto& [name, line] : table) {
        out << std::setw(nameWidth) << name;
        for (const auto& [disturbance, unused] : sums) {
            const auto found = line.find(disturbance);
            out << std::setw(cellWidth) << (found == line.end() ? "" : cellOf(found->second));
        }
        out << "\n";
    }
    for (const auto& [name, count] : runs) {
        out << std::setw(6) << count << "breaks, targets as they should be: " << name << "\n";
    }
    for (const auto& [loss, count] : losses) {
        out << std::setw(6) << count << lossMeanings[static_cast<std::size_t>(loss)] << "\n";
    }
}

void printRows(std::ostream& out, const std::vector<Row>& rows, bool all) {
    for (const Row& row : rows) {
        const Outcome outcome = outcomeOf(row.findings);
        if (!all && outcome != Outcome::fault) {
            continue;
        }
        out << row.at << " " << disturbanceNames[static_cast<std::size_t>(row.disturbance)] << ", "
            << lineOf(row) << " " << row.step.what << ": "
            << outcomeNames[static_cast<std::size_t>(outcome)]
            << (row.disturbance == Disturbance::cancelled ? "" : ", " + runsOf(row)) << "\n";
        for (const Finding& finding : row.findings) {
            const std::string meaning =
                finding.loss ? lossMeanings[static_cast<std::size_t>(*finding.loss)] : "FAULT";
            out << "      " << finding.what << " (" << meaning.substr(0, meaning.find(':'))
                << ")\n";
        }
    }
}

bool hasFault(const std::vector<Row>& rows) {
    return std::any_of(rows.begin(), rows.end(),
                       [](const Row& row) { return outcomeOf(row.findings) == Outcome::fault; });
}

} // namespace crash
