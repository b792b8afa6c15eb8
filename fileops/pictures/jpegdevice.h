#pragma once

#include <QIODevice>

/**
 * A JPEG file on its way to the decoder, which fills up with grey what a cut file lacks and tells nobody.
 * Does not own the file. Any thread.
 */
class JpegDevice : public QIODevice
{
    Q_OBJECT

public:
    explicit JpegDevice(QIODevice &file);

    /** True once the decoder has asked for more than there is. */
    bool isCut() const { return m_isCut; }

    qint64 size() const override { return m_file.size(); }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice &m_file;
    bool m_isCut = false;
};
