#include "FileNames.h"

#include <QTextCodec>

namespace tool
{

namespace
{

constexpr int kUtf8Mib = 106;
// A byte that does not belong to a UTF-8 sequence is held as the lone low surrogate U+DC00 + byte;
// valid UTF-8 never decodes to one, so encoding gives the byte back.
constexpr ushort kRawByteBase = 0xDC00;

// The length of the UTF-8 sequence that @p lead starts and the smallest code point it may encode;
// 0 for a byte that cannot start one.
int sequenceLength(uchar lead, uint* minimum)
{
    if (lead >= 0xC2 && lead <= 0xDF) {
        *minimum = 0x80;
        return 2;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        *minimum = 0x800;
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        *minimum = 0x10000;
        return 4;
    }
    return 0;
}

/** UTF-8 that keeps every byte: what strict UTF-8 refuses becomes U+DC80..U+DCFF and back. */
class RawBytesUtf8Codec : public QTextCodec
{
public:
    QByteArray name() const override { return QByteArrayLiteral("x-coreqt-utf8-raw-bytes"); }
    // No registered MIB enum: the codec is found only as the locale's.
    int mibEnum() const override { return 0; }

protected:
    QString convertToUnicode(const char* in, int length, ConverterState* state) const override;
    QByteArray convertFromUnicode(const QChar* in, int length, ConverterState* state) const override;
};

// A sequence cut off at the end of a piece is kept in @p state (up to 3 bytes) for the next piece.
QString RawBytesUtf8Codec::convertToUnicode(const char* in, int length, ConverterState* state) const
{
    QByteArray bytes;
    for (int j = 0; state && j < state->remainingChars; ++j)
        bytes += char(state->state_data[j]);
    bytes.append(in, length);
    if (state)
        state->remainingChars = 0;

    QString text;
    text.reserve(bytes.size());
    for (int i = 0; i < bytes.size();) {
        const uchar lead = uchar(bytes.at(i));
        if (lead < 0x80) {
            text += QChar(lead);
            ++i;
            continue;
        }
        uint minimum = 0;
        const int n = sequenceLength(lead, &minimum);
        uint code = n == 2 ? lead & 0x1F : n == 3 ? lead & 0x0F : lead & 0x07;
        int k = 1;
        for (; n > 0 && k < n && i + k < bytes.size() && (uchar(bytes.at(i + k)) & 0xC0) == 0x80; ++k)
            code = (code << 6) | (uchar(bytes.at(i + k)) & 0x3F);
        if (n > 0 && k < n && i + k == bytes.size() && state) {
            for (int j = 0; j < k; ++j)
                state->state_data[j] = uchar(bytes.at(i + j));
            state->remainingChars = k;
            break;
        }
        if (n == 0 || k < n || code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
            text += QChar(ushort(kRawByteBase + lead));
            ++i;
            continue;
        }
        if (code > 0xFFFF) {
            text += QChar(QChar::highSurrogate(code));
            text += QChar(QChar::lowSurrogate(code));
        } else {
            text += QChar(ushort(code));
        }
        i += n;
    }
    return text;
}

QByteArray RawBytesUtf8Codec::convertFromUnicode(const QChar* in, int length, ConverterState*) const
{
    QByteArray bytes;
    bytes.reserve(length);
    for (int i = 0; i < length; ++i) {
        uint code = in[i].unicode();
        if (in[i].isHighSurrogate() && i + 1 < length && in[i + 1].isLowSurrogate()) {
            code = QChar::surrogateToUcs4(in[i], in[i + 1]);
            ++i;
        } else if (code >= kRawByteBase + 0x80 && code <= kRawByteBase + 0xFF) {
            bytes += char(code - kRawByteBase);
            continue;
        } else if (in[i].isSurrogate()) {
            bytes += '?'; // a lone surrogate names no character and no byte
            continue;
        }
        if (code < 0x80) {
            bytes += char(code);
        } else if (code < 0x800) {
            bytes += char(0xC0 | (code >> 6));
            bytes += char(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            bytes += char(0xE0 | (code >> 12));
            bytes += char(0x80 | ((code >> 6) & 0x3F));
            bytes += char(0x80 | (code & 0x3F));
        } else {
            bytes += char(0xF0 | (code >> 18));
            bytes += char(0x80 | ((code >> 12) & 0x3F));
            bytes += char(0x80 | ((code >> 6) & 0x3F));
            bytes += char(0x80 | (code & 0x3F));
        }
    }
    return bytes;
}

} // namespace

void keepFileNameBytes()
{
    // Another locale encoding (Latin-1, say) maps every byte to a character and back already.
    if (QTextCodec::codecForLocale()->mibEnum() != kUtf8Mib)
        return;
    // Qt takes ownership of every codec constructed and deletes it at exit.
    QTextCodec::setCodecForLocale(new RawBytesUtf8Codec);
}

} // namespace tool
