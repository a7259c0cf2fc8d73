#pragma once

#include <support/helpers.h>

#include <type_traits>

/** Changes @p value to a different one. */
inline void change(QDateTime& value) { value = QDateTime::fromSecsSinceEpoch(value.isValid() ? 2 : 1); }
template <typename T> void change(T& value) {
    if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>) {
        value = T(int(value) + 1);
    } else {
        value.append(typename T::value_type()); // a text, list or vector
    }
}

/** The name of a field without its class, taken from the signature of this function. */
template <auto field> QString nameOf() {
    const QString signature = u(static_cast<const char*>(__PRETTY_FUNCTION__));
    return signature.section(u("::"), -1).chopped(1);
}

/** A value that converts to the type of any field. */
struct Anything {
    template <typename T> operator T() const;
};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmissing-field-initializers" // clang warns of too few values
template <typename Record, typename... Values> auto isMadeOf(int) -> decltype(Record{Values()...}, std::true_type());
template <typename Record, typename... Values> std::false_type isMadeOf(long);
#pragma GCC diagnostic pop

/** The number of fields of a record. A base counts as one; a record with constructors gives one at most. */
template <typename Record, typename... Values> constexpr int fieldCount() {
    if constexpr (decltype(isMadeOf<Record, Values..., Anything>(0))::value) {
        return fieldCount<Record, Values..., Anything>();
    } else {
        return sizeof...(Values);
    }
}

/** What a printer writes to a default stream, then "|" and 1, which show the spacing mode that it leaves. */
template <typename Record> QString printed(const Record& record) {
    QString text;
    QDebug(&text) << record << "|" << 1;
    return text;
}
template <typename Record>
auto printedIfPossible(const Record& record, int) -> decltype(std::declval<QDebug&>() << record, QString()) {
    return printed(record);
}
template <typename Record> QString printedIfPossible(const Record&, long) { return {}; }

/**
 * The names of unusual fields, each with the difference. A usual field starts as zero or empty, counts in comparisons,
 * is printed if the record has a printer, and is declared after the one before it in @p fields.
 */
template <typename Record, auto... fields> QString unusualFields() {
    QStringList remarks;
    const Record untouched;
    const void* previous = nullptr;
    const auto examine = [&](auto field, const QString& name) {
        Record record;
        Record other;
        if (untouched.*field != std::decay_t<decltype(record.*field)>()) { remarks += name + u(" has a default"); }
        change(record.*field);
        if (record == other) { remarks += name + u(" is ignored"); }
        if ((record == other) == (record != other)) { remarks += name + u(" is both"); }
        const QString text = printedIfPossible(record, 0);
        if (!text.isEmpty() && text == printedIfPossible(untouched, 0)) { remarks += name + u(" is not printed"); }
        change(other.*field);
        if (!(record == other) || record != other) { remarks += name + u(" is never equal"); }
        if (previous >= &(untouched.*field)) { remarks += name + u(" is out of order"); }
        previous = &(untouched.*field);
    };
    (examine(fields, nameOf<fields>()), ...);
    const int others = fieldCount<Record>() - int(sizeof...(fields));
    if (others > 0) { remarks += u("%1 more are not named").arg(others); }
    return remarks.join(u(", "));
}
