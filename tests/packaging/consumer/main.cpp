// A program built against an installed CoreQt: it includes the umbrella header
// and touches each of the three libraries.
#include <CoreQt/CoreQt.h>

#include <QString>

#include <iostream>

int main()
{
    kom::smart<komObject> object(new komObject);
    ko::RuntimeError cause("cause");
    ko::Exception error("error", &cause);
    const QString version = QString::fromLatin1(ko::coreQtVersion());
    if (!object || !error.cause() || version != QLatin1String("1.0.0"))
        return 1;
    ko::Log::instance().setLogLevel(ko::Log::Message);
    std::cout << "consumer ok " << version.toStdString() << std::endl;
    return 0;
}
