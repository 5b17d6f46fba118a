#include "cusbfulldumptables.h"

#include <QStringList>

#include <initializer_list>
#include <utility>

namespace UsbDump {

// The notes that depend on the value alone: the standards' names for bits
// and codes.
QString fixedNote(Note eNote, quint32 v, QStringList &listBelow)
{
    auto bits = [&listBelow, v](std::initializer_list<std::pair<int, const char *>> list) {
        for (const auto &b : list)
            if (v & (1u << b.first))
                listBelow << QString::fromLatin1(b.second);
    };
    auto paired = [](const char *pName, const QString &strText) {
        return QString::fromLatin1(pName).leftJustified(kFieldWidth) + strText;
    };
    switch (eNote) {
    case Note::ConfigAttributes:
        listBelow << ((v & 0x40) ? QStringLiteral("Self Powered") : QStringLiteral("(Bus Powered)"));
        bits({{5, "Remote Wakeup"}});
        return QString();
    case Note::EndpointAddress:
        return QStringLiteral(" EP %1 %2").arg(v & 0x0F).arg((v & 0x80) ? QStringLiteral("IN") : QStringLiteral("OUT"));
    case Note::EndpointAttributes: {
        static const char *const kTransfer[] = {"Control", "Isochronous", "Bulk", "Interrupt"};
        static const char *const kSynch[] = {"None", "Asynchronous", "Adaptive", "Synchronous"};
        static const char *const kUsage[] = {"Data", "Feedback", "Implicit feedback Data", "Reserved"};
        listBelow << paired("Transfer Type", QString::fromLatin1(kTransfer[v & 3]))
                  << paired("Synch Type", QString::fromLatin1(kSynch[(v >> 2) & 3]))
                  << paired("Usage Type", QString::fromLatin1(kUsage[(v >> 4) & 3]));
        return QString();
    }
    case Note::MaxPacketSize:
        return QStringLiteral(" %1x %2 bytes").arg(((v >> 11) & 3) + 1).arg(v & 0x7FF);
    case Note::AcSubtype:
        return QStringLiteral("(%1)").arg(QLatin1String(audioControlSubtype(quint8(v))));
    case Note::AsSubtype:
        return QStringLiteral("(%1)").arg(QLatin1String(audioStreamingSubtype(quint8(v))));
    case Note::AsEndpointSubtype:
        return v == 1 ? QStringLiteral("(EP_GENERAL)") : QStringLiteral("()");
    case Note::ChannelConfig:
        for (int i = 0; i < 12; ++i)
            if (v & (1u << i))
                listBelow << QString::fromLatin1(channelName(i));
        return QString();
    case Note::FeatureControls:
        bits({{0, "Mute Control"}, {1, "Volume Control"}, {2, "Bass Control"}, {3, "Mid Control"},
            {4, "Treble Control"}, {5, "Graphic Equalizer Control"}, {6, "Automatic Gain Control"},
            {7, "Delay Control"}, {8, "Bass Boost Control"}, {9, "Loudness Control"}});
        return QString();
    case Note::ProcessType:
        return QString::fromLatin1(processTypeName(quint16(v)));
    case Note::FormatTag:
        return QString::fromLatin1(formatTagName(quint16(v)));
    case Note::FormatType:
        return v >= 1 && v <= 3 ? QStringLiteral("(FORMAT_TYPE_%1)").arg(QString(int(v), QLatin1Char('I'))) : QString();
    case Note::Frames:
        return QStringLiteral("frames");
    case Note::SamFreqType:
        return v == 0 ? QStringLiteral("Continuous") : QStringLiteral("Discrete");
    case Note::LockDelayUnits: {
        static const char *const kUnits[] = {"Undefined", "Milliseconds", "Decoded PCM samples"};
        return v <= 2 ? QString::fromLatin1(kUnits[v]) : QString();
    }
    case Note::AsEndpointAttributes:
        bits({{0, "Sampling Frequency"}, {1, "Pitch"}, {7, "MaxPacketsOnly"}});
        return QString();
    case Note::MicroSeconds:
        return QStringLiteral("micro seconds");
    case Note::Usb2ExtAttributes:
        bits({{1, "HIRD Link Power Management (LPM) Supported"}, {2, "BESL Link Power Management (LPM) Supported"}});
        if (v & 0x08)
            listBelow << QStringLiteral("Baseline BESL value %1").arg((v >> 8) & 0x0F);
        if (v & 0x10)
            listBelow << QStringLiteral("Deep BESL value %1").arg((v >> 12) & 0x0F);
        return QString();
    case Note::SsAttributes:
        bits({{1, "Latency Tolerance Messages (LTM) Supported"}});
        return QString();
    case Note::SsSpeeds:
        bits({{0, "Device can operate at Low Speed (1Mbps)"}, {1, "Device can operate at Full Speed (12Mbps)"},
            {2, "Device can operate at High Speed (480Mbps)"}, {3, "Device can operate at SuperSpeed (5Gbps)"}});
        return QString();
    case Note::SsFunctionality: {
        static const char *const kSpeeds[]
            = {"Low Speed (1Mbps)", "Full Speed (12Mbps)", "High Speed (480Mbps)", "SuperSpeed (5Gbps)"};
        listBelow << (v <= 3
                ? QStringLiteral("Lowest fully-functional device speed is %1").arg(QLatin1String(kSpeeds[v]))
                : QStringLiteral("Lowest fully-functional device speed is unknown"));
        return QString();
    }
    case Note::U3vVersion:
        return QStringLiteral("(%1.%2)").arg(v >> 16).arg(v & 0xFFFF);
    case Note::U3vSpeeds:
        bits({{0, "Low Speed"}, {1, "Full Speed"}, {2, "High Speed"}, {3, "SuperSpeed"}, {4, "SuperSpeedPlus"}});
        return QString();
    default:
        return QString();
    }
}

} // namespace UsbDump
