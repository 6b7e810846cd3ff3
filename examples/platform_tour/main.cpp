// A short tour of the platform layer that CoreQt builds on: the log, the
// exception chain, shared handles, status messages and the cipher engine.
#include <CoreQt.h>

#include <iostream>

namespace
{

// Writes one line in the log's idiom: lock, threshold, prefix, text, line end.
void logLine(ko::Log::ELevel level, const std::string& text)
{
    ko::Log& log = ko::Log::instance();
    ko::MutexLocker lock(log.mutex(), true);
    std::ostream* os = log.getStream(level);
    if (!os || log.logLevel() > level)
        return;
    log.pre(level);
    *os << text << std::endl;
}

class PrintingHandler : public komStatusMessageHandlerInterface
{
public:
    void sendStatusMessage(kom::StatusMessageType type, const komString& text, const komObject*) override
    {
        logLine(ko::Log::Message, "status " + std::to_string(int(type)) + ": " + text.text());
    }
    void setStatusMessageVerbosity(kom::StatusMessageType) override {}
    kom::StatusMessageType statusMessageVerbosity() const override { return kom::StatusTrace; }
};

} // namespace

int main()
{
    ko::Log::instance().setLogLevel(ko::Log::Message);
    logLine(ko::Log::Message, std::string("CoreQt ") + ko::coreQtVersion());

    ko::RuntimeError root("disk full");
    ko::RuntimeError top("saving the recording failed", &root);
    for (const ko::Exception* e = &top; e; e = e->cause())
        logLine(ko::Log::Warning, std::string("exception: ") + e->what());

    PrintingHandler handler;
    kom::komStatusMessageProcessor::defaultProcessor()->addStatusMessageHandler(&handler);
    kom::sendStatusMessage(kom::StatusInfo, "camera connected", nullptr);
    kom::komStatusMessageProcessor::defaultProcessor()->removeStatusMessageHandlers();

    kom::smart<komObject> first(new komObject);
    kom::smart<komObject> second(first);
    logLine(ko::Log::Message, "shared handle count: " + std::to_string(second.useCount()));

    ko::Enigma enigma{ko::Random(20261122)};
    std::string text = "hidden from casual reading";
    std::string cipher(text.size(), '\0');
    unsigned state = enigma.initialState();
    enigma.encode(reinterpret_cast<const unsigned char*>(text.data()), unsigned(text.size()),
                  reinterpret_cast<unsigned char*>(&cipher[0]), unsigned(cipher.size()), state);
    std::string back(text.size(), '\0');
    state = enigma.initialState();
    enigma.decode(reinterpret_cast<const unsigned char*>(cipher.data()), unsigned(cipher.size()),
                  reinterpret_cast<unsigned char*>(&back[0]), unsigned(back.size()), state);
    logLine(ko::Log::Message, "enciphered and back: " + back);
    return back == text ? 0 : 1;
}
