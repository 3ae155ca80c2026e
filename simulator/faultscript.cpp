#include "simulator/faultscript.h"

#include <QFile>

#include <toml++/toml.h>

namespace simulator {

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), int(text.size()));
}

/** A TOML value as it would be written on a command line. */
std::optional<QString> settingText(const toml::node& node) {
    if (const auto text = node.value_exact<std::string>())
        return textOf(*text);
    if (const auto number = node.value_exact<std::int64_t>())
        return QString::number(*number);
    if (const auto number = node.value_exact<double>())
        return QString::number(*number, 'g', 17);
    return std::nullopt;
}

class ScriptReader {
public:
    explicit ScriptReader(const QString& file_name) : m_file_name(file_name) {}

    Result<FaultScript> read() {
        QFile file(m_file_name);
        if (!file.open(QIODevice::ReadOnly))
            return Failure(QString::fromLatin1("%1: %2").arg(m_file_name, file.errorString()));
        try {
            readRoot(toml::parse(file.readAll().toStdString()));
        } catch (const toml::parse_error& error) {
            fail(error.source(), textOf(error.description()));
        }
        if (!m_error.isEmpty())
            return Failure(m_error);
        return m_script;
    }

private:
    void readRoot(const toml::table& root) {
        for (const auto& [key, node] : root) {
            if (key == "seed")
                readSeed(node);
            else if (key == "fault")
                readFaults(node);
            else
                fail(key.source(), QString::fromLatin1("unknown key \"%1\"; there may be seed and "
                                                       "[[fault]] tables")
                                       .arg(textOf(key.str())));
        }
    }

    void readSeed(const toml::node& node) {
        const auto seed = node.value_exact<std::int64_t>();
        if (seed && *seed >= 0 && *seed <= 0xFFFFFFFF)
            m_script.seed = quint32(*seed);
        else
            fail(node.source(), QString::fromLatin1("seed must be a number from 0 to 4294967295"));
    }

    void readFaults(const toml::node& node) {
        if (!node.is_array_of_tables()) {
            fail(node.source(), QString::fromLatin1("faults must be [[fault]] tables"));
            return;
        }
        for (const toml::node& element : *node.as_array())
            readFault(*element.as_table());
    }

    void readFault(const toml::table& table) {
        const auto kind = table["kind"].value_exact<std::string>();
        if (!kind) {
            fail(table.source(), QString::fromLatin1("a fault must have a kind, such as "
                                                     "kind = \"silence\""));
            return;
        }
        Result<Fault> fault = makeFault(textOf(*kind));
        if (!fault) {
            fail(table["kind"].node()->source(), fault.error());
            return;
        }
        readSettings(table, *fault);
        if (const Result<void> checked = checkFault(*fault); !checked)
            fail(table.source(), checked.error());
        m_script.faults.push_back(*fault);
    }

    void readSettings(const toml::table& table, Fault& fault) {
        for (const auto& [key, node] : table) {
            if (key == "kind")
                continue;
            const std::optional<QString> value = settingText(node);
            const QString name = textOf(key.str());
            if (!value)
                fail(key.source(), QString::fromLatin1("%1 must be a number or a text").arg(name));
            else if (const auto applied = applyFaultSetting(fault, name, *value); !applied)
                fail(key.source(), applied.error());
        }
    }

    /** Keeps the error that comes first in the file: tables are not in order. */
    void fail(const toml::source_region& where, const QString& what) {
        if (!m_error.isEmpty() && where.begin.line >= m_error_line)
            return;
        m_error_line = where.begin.line;
        m_error = QString::fromLatin1("%1:%2: %3").arg(m_file_name).arg(m_error_line).arg(what);
    }

    const QString m_file_name;
    FaultScript m_script;
    QString m_error; // empty: none so far
    toml::source_index m_error_line = 0;
};

} // namespace

Result<FaultScript> loadFaultScript(const QString& file_name) {
    return ScriptReader(file_name).read();
}

} // namespace simulator
