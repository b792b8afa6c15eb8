#pragma once

#include <QString>
#include <QStringView>

#include <utility>

/**
 * A text of a record in one small block of memory: a byte a character where each fits into one. A million
 * names take a third of what they would as strings of their own, which are made of it when asked for.
 */
class CompactText
{
public:
    CompactText() = default;
    explicit CompactText(QStringView text) { assign(text); }
    CompactText(const CompactText &) = delete;
    CompactText &operator=(const CompactText &) = delete;
    CompactText(CompactText &&other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    CompactText &operator=(CompactText &&other) noexcept
    {
        std::swap(m_block, other.m_block);
        return *this;
    }
    ~CompactText();

    void assign(QStringView text);
    QString toString() const;
    bool isEmpty() const { return !m_block; }
    bool isEqual(QStringView text) const;
    /** Calls use() with the text as it is kept: a QLatin1String or a QStringView. */
    template <typename Use>
    void visit(Use use) const
    {
        if (m_block && isWide())
            use(QStringView(wide(), size()));
        else if (m_block)
            use(QLatin1String(narrow(), size()));
    }

private:
    static constexpr quint32 wideBit = 1U << 31;
    int size() const { return static_cast<int>(*m_block & ~wideBit); }
    bool isWide() const { return (*m_block & wideBit) != 0; }
    char *narrow() const { return reinterpret_cast<char *>(m_block + 1); }
    QChar *wide() const { return reinterpret_cast<QChar *>(m_block + 1); }

    quint32 *m_block = nullptr; ///< how many characters, and of two bytes each, then they; null for none
};
