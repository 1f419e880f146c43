#include "TranslationFile.h"

#include <QFile>
#include <QXmlStreamReader>

namespace {

TranslatedText readMessage(QXmlStreamReader& xml, const QString& context) {
    TranslatedText text{.context = context, .source = {}, .translations = {}, .finished = false};
    while (xml.readNextStartElement()) {
        if (xml.name() == u"source") {
            text.source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            text.finished = !xml.attributes().hasAttribute(QStringLiteral("type"));
            // Plural forms are elements of their own.
            QString plain;
            while (xml.readNext() != QXmlStreamReader::EndElement) {
                if (xml.isStartElement())
                    text.translations.append(xml.readElementText());
                else
                    plain += xml.text();
            }
            if (text.translations.isEmpty())
                text.translations.append(plain);
        } else {
            xml.skipCurrentElement();
        }
    }
    return text;
}

} // namespace

QList<TranslatedText> readTranslationFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<TranslatedText> texts;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"name")
            context = xml.readElementText();
        else if (xml.name() == u"message")
            texts.append(readMessage(xml, context));
    }
    return xml.hasError() ? QList<TranslatedText>() : texts;
}
