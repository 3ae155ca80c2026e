#ifndef TESTS_UNIT_RECIPE_RECIPECONTENT_H
#define TESTS_UNIT_RECIPE_RECIPECONTENT_H

#include "host/recipe/recipecheck.h"

#include <QTextCodec>

#include <ostream>

/** Program files made of rows, as a person's editor may leave them. */
namespace recipecontent {

inline QByteArray encoded(const QString& text) {
    const QTextCodec* const codec = QTextCodec::codecForName("UTF-16LE");
    QTextCodec::ConverterState without_mark(QTextCodec::IgnoreHeader);
    return QByteArray("\xFF\xFE") +
           codec->fromUnicode(text.constData(), text.size(), &without_mark);
}

inline QString lineOf(const QStringList& fields) {
    return fields.join(QLatin1Char('\t')) + QLatin1Char('\n');
}

/** Program @p number with 24 times @p value. */
inline QStringList row(int number, const QString& value = QStringLiteral("1")) {
    QStringList fields(host::recipeLabel(number));
    for (int i = 0; i < host::RecipeColumns; ++i)
        fields.append(value);
    return fields;
}

/** Titles and rows. */
inline QByteArray file(const QVector<QStringList>& rows) {
    QString text = lineOf(host::recipeTitles());
    for (const QStringList& fields : rows)
        text += lineOf(fields);
    return encoded(text);
}

/** Programs 1 and 2, with one field of the second replaced. */
inline QByteArray fileWith(int column, const QString& text) {
    QStringList changed = row(2);
    changed[column] = text;
    return file({row(1), changed});
}

inline std::string texts(const host::RecipeCheck& check) {
    QString all;
    for (const host::RecipeFinding& finding : check.findings)
        all += findingText(QStringLiteral("f"), finding) + QLatin1Char('\n');
    return all.toStdString();
}

} // namespace recipecontent

#endif
