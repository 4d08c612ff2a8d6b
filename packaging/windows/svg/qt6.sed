# The sources of Qt SVG 5.15 made to fit Qt 6. The changed library is under the licence of the
# original (LGPL 3).
# References into strings are views.
s/QStringRef(\([a-z]*\)\.string(), \1\.position() + \([0-9]*\), [^=]*5)/\1.mid(\2, 5)/
s/QStringRef(\([a-zA-Z.]*\)\.string(), \1\.position(), \([0-9]\))/\1.left(\2)/
s/QStringRef \([a-z]*Ref\)(name\.string(), name\.position() + \([0-9]\), name\.length() - [0-9])/QStringView \1 = name.mid(\2)/
s/QStringRef(str\.string(), str\.position() + start, l)/str.mid(start, l)/
s/str\.string()->constData() + str\.position()/str.data()/
s/\.midRef(1)/.mid(1)/
s/QXmlStreamStringRef(QStringRef(&sym\.text, sym\.start, len))/sym.text.mid(sym.start, len)/
s/QXmlStreamStringRef(QStringRef(&value, 0, value\.length()))/value/
s/QXmlStreamStringRef(name)/name.toString()/
s/QXmlStreamStringRef/QString/
s/QStringRef(&sym\.text, sym\.start, sym\.len)/QStringView(sym.text).mid(sym.start, sym.len)/
s/QStringRef(&key, 0, key\.length())/QStringView(key)/
s/QStringRef(&\([a-z]*\))/QStringView(\1)/
s/QStringRef/QStringView/g
s/colorStrTr\.unicode()/colorStrTr.data()/
s/QString attribute(NodePtr node, const QString &name) const override/QString attributeValue(NodePtr node, const QCss::AttributeSelector \&selector) const override/
# Characters are not made of numbers by themselves.
s/\bunicode = 0;/unicode = u'\\0';/
s/(uncStr\.isEmpty()) ? 0 :/uncStr.isEmpty() ? QChar() :/
# Weights of fonts are those of CSS; texts are UTF-8 by themselves; there is no matrix but the
# transform; the names of attributes come in a selector.
s/svgWeight = 100;/svgWeight = 300;/
s/svgWeight \*= 10;/break;/
s/font\.setWeight(SVGToQtWeight(\([^)]*\)))/font.setWeight(QFont::Weight(\1))/
/qtextcodec\.h/d
/setCodec/d
/QtGui\/qmatrix\.h/d
s/QStringView urlRef(attributes\.\([a-z]*\)\.string(), .*);/QStringView urlRef = QStringView(attributes.\1).mid(3);/
s/QStringView ref(&name, 1, name\.length() - 1)/QStringView ref = QStringView(name).mid(1)/
s/QStringView str(&instr)/QStringView str(instr)/
s/\*const_cast<QChar \*>(end) = 0;/*const_cast<QChar *>(end) = QChar();/
/^    QString attributeValue/,/^    }/s/name == /selector.name == /
/^QMatrix QSvgRenderer/,/^}/d
/QMatrix matrixForElement/d
/include "moc_/d
# An empty view has no characters to point at, not even a zero behind its last.
s/const QChar \*c = str\.constData();/& static const QChar none; if (!c) c = \&none;/
