#pragma once

#include <string>
#include <vector>

/// The value in the middle; not a number for none.
double median(std::vector<double> values);
/// The value that the `share` (0 to 1) of them do not exceed; not a number for none.
double percentile(std::vector<double> values, double share);

/// `value` with this many decimals.
std::string fixed(double value, int decimals);

/// Figures as they are pasted into the documentation.
class Table {
public:
    explicit Table(std::vector<std::string> head);
    void add(std::vector<std::string> row);
    /// Prints it, with an empty line on both sides.
    void print() const;

private:
    std::vector<std::vector<std::string>> m_rows;
};
