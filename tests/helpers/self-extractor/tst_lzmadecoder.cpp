// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/referencedecoder.h"
#include "tests/helpers/self-extractor/sfxtest.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

#include <sys/mman.h>

#include <cstring>
#include <memory>

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t windowSize = 16 * pageSize;
constexpr std::size_t inputSize = 2 * pageSize;

// Memory between two pages that cannot be accessed. `size` is a multiple of the page size.
class GuardedMemory
{
public:
    explicit GuardedMemory(std::size_t size) : m_size(size)
    {
        m_all = mmap(nullptr, size + 2 * pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_all == MAP_FAILED || mprotect(begin(), size, PROT_READ | PROT_WRITE) != 0) {
            qFatal("no memory");
        }
    }
    GuardedMemory(const GuardedMemory &) = delete;
    GuardedMemory &operator=(const GuardedMemory &) = delete;
    ~GuardedMemory() { munmap(m_all, m_size + 2 * pageSize); }

    Byte *begin() const { return static_cast<Byte *>(m_all) + pageSize; }
    Byte *end() const { return begin() + m_size; }

private:
    void *m_all;
    std::size_t m_size;
};

// A decoder of one kind with its own window. The memory with its input ends exactly where the input
// ends.
class Feeder
{
public:
    Feeder(const LzmaFunctions &functions, const QByteArray &properties)
        : m_functions(functions)
        , m_window(windowSize)
        , m_input(inputSize)
    {
        LzmaDec_CONSTRUCT(&m_decoder);
        const auto *bytes = reinterpret_cast<const Byte *>(properties.constData());
        if (functions.allocateProbs(&m_decoder, bytes, LZMA_PROPS_SIZE, &testMemory) != SZ_OK) {
            qFatal("the properties are not accepted");
        }
        m_decoder.dic = m_window.begin();
        m_decoder.dicBufSize = windowSize;
        std::memset(m_window.begin(), 0, windowSize);
        functions.init(&m_decoder);
    }
    ~Feeder() { m_functions.freeProbs(&m_decoder, &testMemory); }

    // The result of one call, for comparison.
    struct Step
    {
        SRes result;
        SizeT consumed;
        SizeT position;
        ELzmaStatus status;
        bool operator==(const Step &) const = default;
    };
    Step decode(QByteArrayView input, SizeT wanted)
    {
        if (m_decoder.dicPos == windowSize) {
            m_decoder.dicPos = 0;
        }
        auto *begin = m_input.end() - input.size();
        std::memcpy(begin, input.data(), static_cast<std::size_t>(input.size()));
        const SizeT limit = qMin(m_decoder.dicPos + wanted, SizeT(windowSize));
        Step step = {SZ_OK, static_cast<SizeT>(input.size()), 0, LZMA_STATUS_NOT_SPECIFIED};
        step.result = m_functions.decodeToDic(&m_decoder, limit, begin, &step.consumed,
                                              LZMA_FINISH_ANY, &step.status);
        step.position = m_decoder.dicPos;
        return step;
    }
    bool hasWindowOf(const Feeder &other) const
    {
        return std::memcmp(m_window.begin(), other.m_window.begin(), windowSize) == 0;
    }
    QByteArray window() const
    {
        return QByteArray(reinterpret_cast<const char *>(m_window.begin()), windowSize);
    }

private:
    const LzmaFunctions &m_functions;
    CLzmaDec m_decoder{};
    GuardedMemory m_window;
    GuardedMemory m_input;
};

// Five property bytes as in 7z, with a dictionary as large as the window.
QByteArray propertiesOf(int literalContext, int literalPosition, int position)
{
    QByteArray bytes(LZMA_PROPS_SIZE, 0);
    bytes[0] = static_cast<char>((position * 5 + literalPosition) * 9 + literalContext);
    qToLittleEndian<quint32>(windowSize, bytes.data() + 1);
    return bytes;
}

// Only the packed stream, which lies between the start header and the end header.
QByteArray packedStream(const QByteArray &content, const QString &method)
{
    const QByteArray archive
        = packTree({{QStringLiteral("main.exe"), content}},
                   {QStringLiteral("-mf=off"), QStringLiteral("-mhc=off"), QStringLiteral("-mx=5"),
                    QStringLiteral("-m0=LZMA:d=64k:") + method});
    return archive.mid(32, static_cast<qsizetype>(qFromLittleEndian<quint64>(archive.data() + 12)));
}

// Text, machine code and noise: literals, matches of every distance, repeats.
QByteArray mixedContent()
{
    QByteArray content;
    for (const QByteArray &file : mixedTree()) {
        content += file.left(60000);
    }
    return content + noise(5000, 3) + QByteArray(20000, 'r') + content.left(30000);
}

// Runs both decoders over the same input in the same random pieces. Returns false if they differ.
// `output` receives the decoded bytes, `result` the final status.
bool agree(const QByteArray &stream, const QByteArray &properties, quint32 seed, SizeT limit,
           QByteArray &output, SRes &result)
{
    QRandomGenerator random(seed);
    Feeder own(ownDecoder, properties);
    Feeder reference(referenceDecoder, properties);
    qsizetype at = 0;
    SizeT before = 0;
    output.clear();
    for (;;) {
        const qsizetype most = random.bounded(3) == 0 ? 24 : qsizetype(inputSize);
        const QByteArrayView piece
            = QByteArrayView(stream).sliced(at, qMin(stream.size() - at, 1 + random.bounded(most)));
        const SizeT wanted = qMin(SizeT(1 + random.bounded(quint32(3 * windowSize))),
                                  limit - static_cast<SizeT>(output.size()));
        const Feeder::Step step = own.decode(piece, wanted);
        if (!(step == reference.decode(piece, wanted)) || !own.hasWindowOf(reference)) {
            return false;
        }
        before = before == windowSize ? 0 : before;
        output += own.window().mid(static_cast<qsizetype>(before),
                                   static_cast<qsizetype>(step.position - before));
        const bool isStuck = step.consumed == 0 && step.position == before;
        before = step.position;
        at += static_cast<qsizetype>(step.consumed);
        result = step.result;
        if (result != SZ_OK || isStuck || static_cast<SizeT>(output.size()) == limit) {
            return true;
        }
    }
}

} // namespace

// Compares the decoder that the self-extractor core uses on this system with the one in C.
class TestLzmaDecoder : public QObject
{
    Q_OBJECT

private slots:
    void decodesAsTheReference_data();
    void decodesAsTheReference();
    void staysWithinBoundsOnDamage();
    void staysWithinBoundsOnNoise();
    void isInTheModule();
};

void TestLzmaDecoder::decodesAsTheReference_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QByteArray>("properties");
    QTest::newRow("usual") << "lc=3" << propertiesOf(3, 0, 2);
    QTest::newRow("no context") << "lc=0:lp=0:pb=0" << propertiesOf(0, 0, 0);
    QTest::newRow("most of position") << "lc=0:lp=4:pb=4" << propertiesOf(0, 4, 4);
    QTest::newRow("most of context") << "lc=8:lp=4:pb=4" << propertiesOf(8, 4, 4);
    QTest::newRow("with an end mark") << "eos" << propertiesOf(3, 0, 2);
}

void TestLzmaDecoder::decodesAsTheReference()
{
    QFETCH(QString, method);
    QFETCH(QByteArray, properties);
    const QByteArray content = mixedContent();
    const QByteArray stream = packedStream(content, method);
    QVERIFY(stream.size() > 10000);
    for (quint32 seed = 1; seed <= 20; ++seed) {
        QByteArray output;
        SRes result = SZ_ERROR_FAIL;
        QVERIFY(
            agree(stream, properties, seed, static_cast<SizeT>(content.size()), output, result));
        QCOMPARE(result, SZ_OK);
        QVERIFY(output == content);
    }
}

void TestLzmaDecoder::staysWithinBoundsOnDamage()
{
    const QByteArray content = mixedContent();
    const QByteArray stream = packedStream(content, QStringLiteral("lc=3"));
    QRandomGenerator random(40);
    int refused = 0;
    int different = 0;
    for (quint32 seed = 1; seed <= 400; ++seed) {
        QByteArray damaged = stream;
        // Damages early bits too: there, a distance can point before the first byte.
        const qsizetype range = random.bounded(2) == 0 ? 200 : damaged.size();
        for (int flips = 1 + static_cast<int>(random.bounded(3)); flips > 0; --flips) {
            const qsizetype at = random.bounded(range);
            damaged[at] = static_cast<char>(damaged[at] ^ (1 << random.bounded(8)));
        }
        QByteArray output;
        SRes result = SZ_OK;
        QVERIFY2(agree(damaged, propertiesOf(3, 0, 2), seed, static_cast<SizeT>(content.size()),
                       output, result),
                 qPrintable(QString::number(seed)));
        refused += result != SZ_OK ? 1 : 0;
        different += output != content ? 1 : 0;
    }
    QVERIFY(refused > 100);
    QVERIFY(different > 350);
}

void TestLzmaDecoder::staysWithinBoundsOnNoise()
{
    int refused = 0;
    for (quint32 seed = 1; seed <= 2000; ++seed) {
        QByteArray stream = noise(3000, seed);
        stream[0] = 0; // otherwise the range decoder refuses at once
        QByteArray output;
        SRes result = SZ_OK;
        QVERIFY2(agree(stream, propertiesOf(3, 0, 2), seed, 1 << 20, output, result),
                 qPrintable(QString::number(seed)));
        refused += result != SZ_OK ? 1 : 0;
    }
    QVERIFY(refused > 1000);
}

// The object file's code has no relocations, so the module contains it unchanged.
void TestLzmaDecoder::isInTheModule()
{
#ifdef KESTRELPACK_TEST_LZMA_OBJECT
    QFile object(QStringLiteral(KESTRELPACK_TEST_LZMA_OBJECT));
    QVERIFY2(object.open(QIODevice::ReadOnly), KESTRELPACK_TEST_LZMA_OBJECT);
    const QByteArray bytes = object.readAll();
    QByteArray code; // the largest section of the COFF file
    for (int i = 0; i < qFromLittleEndian<quint16>(bytes.data() + 2); ++i) {
        const char *section = bytes.data() + 20 + 40 * i;
        const auto size = qFromLittleEndian<quint32>(section + 16);
        QCOMPARE(qFromLittleEndian<quint16>(section + 32), quint16(0)); // relocations
        if (size > static_cast<quint32>(code.size())) {
            code = bytes.mid(qFromLittleEndian<quint32>(section + 20), size);
        }
    }
    QVERIFY(code.size() > 4000);
    QFile module(QStringLiteral(KESTRELPACK_TEST_MODULE));
    QVERIFY(module.open(QIODevice::ReadOnly));
    QVERIFY(module.readAll().contains(code));
#else
    QSKIP("built without the assembler");
#endif
}

QTEST_APPLESS_MAIN(TestLzmaDecoder)
#include "tst_lzmadecoder.moc"
