// Reads a BMFont descriptor with the public npm parsers (XML or text, by its first character)
// and prints what they understood as JSON, so tests can compare it with what was written.
'use strict';
const fs = require('fs');
const data = fs.readFileSync(process.argv[2]);
const text = data.toString('utf8');
const parsed = text.trimStart().startsWith('<')
  ? require('parse-bmfont-xml')(data)
  : require('parse-bmfont-ascii')(text);
process.stdout.write(JSON.stringify(parsed));
