#include "fileops/adding/hyperlinkcheck.h"

#include "fileops/adding/fileadder.h"

#include <QLocale>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace {

// Browsers and servers end there too; longer ones freeze whatever shows them.
constexpr int mostSigns = 8192;

bool isControl(QChar sign)
{
    return sign.category() == QChar::Other_Control || sign.category() == QChar::Separator_Line ||
           sign.category() == QChar::Separator_Paragraph;
}

} // namespace

HyperlinkCheck::Fault HyperlinkCheck::faultOf(const QString &text)
{
    if (text.size() > mostSigns)
        return TooLong;
    if (text.trimmed().isEmpty())
        return Empty;
    if (std::any_of(text.cbegin(), text.cend(), isControl))
        return ControlSigns;
    if (FileAdder::isLocal(text))
        return LocalFile;
    return QUrl(text).isValid() ? NoFault : NoAddress;
}

QString HyperlinkCheck::reason(const QString &text)
{
    switch (faultOf(text)) {
    case Empty:
        return tr("Hyperlink must not be empty.");
    case LocalFile:
        return tr("Hyperlinks is file on the local file system");
    case TooLong:
        return tr("The address has %1 signs. At most %2 can be kept.")
            .arg(QLocale().toString(text.size()), QLocale().toString(mostSigns));
    case ControlSigns:
        return tr("The address holds control signs, which no address has.");
    case NoAddress:
        // Behind its first part the text repeats the whole address, piece by piece.
        return tr("This is not a valid address: %1.")
            .arg(QUrl(text).errorString().section(QLatin1Char(';'), 0, 0));
    default:
        return {};
    }
}

QString HyperlinkCheck::line(Fault fault, int count)
{
    const QString number = QLocale().toString(count);
    switch (fault) {
    case TooLong:
        return tr("Longer than %1 signs: %2").arg(QLocale().toString(mostSigns), number);
    case ControlSigns:
        return tr("With control signs: %1").arg(number);
    case LocalFile:
        return tr("Of files that are not there: %1").arg(number);
    default:
        return tr("Not valid: %1").arg(number);
    }
}

bool HyperlinkCheck::accepts(const QString &text)
{
    const Fault fault = faultOf(text);
    ++m_counts[fault == Empty ? NoAddress : fault];
    return fault == NoFault;
}

QString HyperlinkCheck::report() const
{
    QStringList lines;
    int count = 0;
    for (int fault = NoFault + 1; fault < FaultCount; ++fault) {
        if (m_counts[fault] > 0)
            lines += line(Fault(fault), m_counts[fault]);
        count += m_counts[fault];
    }
    if (count == 0)
        return {};
    lines.prepend(count == 1 ? tr("One hyperlink was not added:")
                             : tr("%Ln hyperlinks were not added:", nullptr, count));
    return lines.join(QLatin1Char('\n'));
}
