#include "Table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

double percentile(std::vector<double> values, double share) {
    if (values.empty())
        return std::nan("");
    std::ranges::sort(values);
    const double rank = std::ceil(share * static_cast<double>(values.size()));
    return values[static_cast<std::size_t>(std::max(rank, 1.0)) - 1];
}

double median(std::vector<double> values) {
    return percentile(std::move(values), 0.5);
}

std::string fixed(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

Table::Table(std::vector<std::string> head) : m_rows{std::move(head)} {}

void Table::add(std::vector<std::string> row) {
    m_rows.push_back(std::move(row));
}

void Table::print() const {
    std::vector<std::size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    std::putchar('\n');
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        for (std::size_t j = 0; j < m_rows[i].size(); ++j)
            std::printf(j == 0 ? "| %-*s " : "| %*s ", static_cast<int>(widths[j]),
                        m_rows[i][j].c_str());
        std::puts("|");
        if (i > 0)
            continue;
        for (std::size_t j = 0; j < widths.size(); ++j)
            std::printf(j == 0 ? "|%s-" : "|%s:", std::string(widths[j] + 1, '-').c_str());
        std::puts("|");
    }
    std::putchar('\n');
    std::fflush(stdout);
}
