#include "QueryOutput.h"

#include "Csv.h"
#include "JsonText.h"
#include "Terminal.h"
#include "Utf8.h"

#include <algorithm>
#include <numeric>

namespace kpifc::query {

namespace {

std::string joined(const Values& values) {
    std::string text;
    for (const Value& value : values) {
        text += (&value == values.data() ? "" : "; ") + textOf(value);
    }
    return text;
}

/// The beginning of a printable text, with a sign that more follows.
std::string cut(const std::string& text, std::size_t width) {
    if (displayWidth(text) <= width) {
        return text;
    }
    std::string kept;
    for (std::size_t i = 0; i < text.size();) {
        const std::string next = kept + text.substr(i, utf8Length(std::string_view(text).substr(i)));
        if (displayWidth(next) + 1 > width) {
            break;
        }
        i += next.size() - kept.size();
        kept = next;
    }
    return kept + "…";
}

class Table : public Rows {
public:
    Table(Output& output, Heading heading) : m_output(output), m_heading(std::move(heading)) {
        if (m_heading.withFile) {
            m_heading.columns.insert(m_heading.columns.begin(), "file");
        }
    }

    void add(const std::string& file, const std::vector<Values>& cells) override {
        Line line;
        if (m_heading.withFile) {
            line.push_back(printable(file));
        }
        for (const Values& values : cells) {
            line.push_back(values.empty() ? "-" : printable(joined(values)));
        }
        if (!m_widths.empty()) {
            return print(line);
        }
        m_lines.push_back(std::move(line));
        if (m_lines.size() == kMeasured) {
            measure();
        }
    }
    void end() override {
        if (m_widths.empty() && !m_lines.empty()) {
            measure();
        }
    }

private:
    using Line = std::vector<std::string>;
    /// Widths follow from so many lines, so that tables of any length can be printed.
    static constexpr std::size_t kMeasured = 1000;

    void measure() {
        m_widths.assign(m_heading.columns.size(), 1);
        if (m_heading.isShown) {
            m_lines.insert(m_lines.begin(), m_heading.columns);
        }
        for (const Line& line : m_lines) {
            for (std::size_t i = 0; i < line.size(); ++i) {
                m_widths[i] = std::max(m_widths[i], displayWidth(line[i]));
            }
        }
        fit();
        for (const Line& line : m_lines) {
            print(line, m_heading.isShown && &line == m_lines.data());
        }
        m_lines.clear();
    }

    /// Takes from the widest column until all fit; narrow ones stay.
    void fit() {
        constexpr std::size_t kNarrow = 8;
        const std::size_t columns = terminalColumns();
        m_isCut = columns != 0;
        const std::size_t gaps = 2 * (m_widths.size() - 1);
        while (m_isCut && std::accumulate(m_widths.begin(), m_widths.end(), gaps) >= columns) {
            std::size_t& widest = *std::max_element(m_widths.begin(), m_widths.end());
            if (widest <= kNarrow) {
                break;
            }
            --widest;
        }
    }

    void print(const Line& line, bool isHeading = false) {
        std::string& out = m_output.text();
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string text = m_isCut ? cut(line[i], m_widths[i]) : line[i];
            out += i ? "  " : "";
            out += isHeading ? styled(Style::bold, text) : text;
            if (const std::size_t width = displayWidth(text); i + 1 < line.size() && width < m_widths[i]) {
                out.append(m_widths[i] - width, ' ');
            }
        }
        out += '\n';
        m_output.passOn();
    }

    Output& m_output;
    Heading m_heading;
    std::vector<std::size_t> m_widths;
    std::vector<Line> m_lines; ///< that wait for the widths
    bool m_isCut = false;
};

class CsvRows : public Rows {
public:
    CsvRows(Output& output, const Heading& heading) : m_output(output), m_withFile(heading.withFile) {
        std::vector<std::string> names = heading.columns;
        if (m_withFile) {
            names.insert(names.begin(), "file");
        }
        print(names);
    }
    void add(const std::string& file, const std::vector<Values>& cells) override {
        std::vector<std::string> line;
        if (m_withFile) {
            line.push_back(file);
        }
        for (const Values& values : cells) {
            line.push_back(joined(values));
        }
        print(line);
    }

private:
    void print(const std::vector<std::string>& line) {
        for (const std::string& field : line) {
            m_output.text() += &field == line.data() ? "" : ",";
            csv::appendField(m_output.text(), field);
        }
        m_output.text() += '\n';
        m_output.passOn();
    }

    Output& m_output;
    bool m_withFile;
};

class JsonRows : public Rows {
public:
    JsonRows(Output& output, Heading heading) : m_output(output), m_heading(std::move(heading)) {}

    void add(const std::string& file, const std::vector<Values>& cells) override {
        std::string& out = m_output.text();
        out += '{';
        if (m_heading.withFile) {
            out += "\"file\":";
            json::appendText(out, file);
            out += ',';
        }
        for (std::size_t i = 0; i < cells.size(); ++i) {
            out += i ? "," : "";
            json::appendText(out, m_heading.columns[i]);
            out += ':';
            cell(cells[i]);
        }
        out += "}\n";
        m_output.passOn();
    }

private:
    void cell(const Values& values) {
        std::string& out = m_output.text();
        if (values.size() == 1) {
            return appendJson(out, values.front());
        }
        out += values.empty() ? "null" : "[";
        for (const Value& value : values) {
            out += &value == values.data() ? "" : ",";
            appendJson(out, value);
        }
        out += values.empty() ? "" : "]";
    }

    Output& m_output;
    Heading m_heading;
};

} // namespace

std::unique_ptr<Rows> tableRows(Output& output, Heading heading) {
    return std::make_unique<Table>(output, std::move(heading));
}

std::unique_ptr<Rows> csvRows(Output& output, Heading heading) {
    return std::make_unique<CsvRows>(output, heading);
}

std::unique_ptr<Rows> jsonRows(Output& output, Heading heading) {
    return std::make_unique<JsonRows>(output, std::move(heading));
}

} // namespace kpifc::query
