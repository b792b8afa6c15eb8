#include "fileops/adding/hyperlinkcheck.h"

#include "fileops/adding/fileadder.h"

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
            .arg(QString::number(text.size()), QString::number(mostSigns));
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

QString HyperlinkCheck::phrase(Fault fault)
{
    switch (fault) {
    case TooLong:
        return tr("longer than %1 signs").arg(mostSigns);
    case ControlSigns:
        return tr("with control signs");
    case LocalFile:
        return tr("of files that are not there");
    default:
        return tr("not valid");
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
    QStringList phrases;
    int count = 0;
    for (int fault = NoFault + 1; fault < FaultCount; ++fault) {
        if (m_counts[fault] > 0)
            phrases.append(QString::number(m_counts[fault]) + QLatin1Char(' ') + phrase(Fault(fault)));
        count += m_counts[fault];
    }
    if (count == 0)
        return {};
    const QString reasons = phrases.join(QLatin1String(", "));
    return count == 1 ? tr("One hyperlink was not added: %1.")
                            .arg(reasons.mid(reasons.indexOf(QLatin1Char(' ')) + 1))
                      : tr("%1 hyperlinks were not added: %2.").arg(QString::number(count), reasons);
}
