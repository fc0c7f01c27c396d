// Parses each file named and prints what is no Transact-SQL, as FILE:LINE:COLUMN. See check-tsql.
const fs = require('fs');
const {CharStreams, CommonTokenStream} = require('antlr4ts');
const {CaseChangingStream} = require('antlr4ts-sql/dist/src/models/CaseChangingStream');
const {TSqlLexer} = require('antlr4ts-sql/dist/src/grammar-output/tsql/TSqlLexer');
const {TSqlParser} = require('antlr4ts-sql/dist/src/grammar-output/tsql/TSqlParser');

let faults = 0;

function check(file, text, firstLine) {
  const listener = {
    syntaxError(recognizer, symbol, line, column, message) {
      ++faults;
      console.log(`${file}:${firstLine + line - 1}:${column + 1}: ${message.slice(0, 200)}`);
    }
  };
  const lexer = new TSqlLexer(new CaseChangingStream(CharStreams.fromString(text), true));
  const parser = new TSqlParser(new CommonTokenStream(lexer));
  for (const part of [lexer, parser]) {
    part.removeErrorListeners();
    part.addErrorListener(listener);
  }
  parser.tsql_file();
}

for (const file of process.argv.slice(2)) {
  // Of the rights, the grammar knows only some, and no columns.
  const text =
      fs.readFileSync(file, 'utf8').replace(/^grant [a-z, ]+ on (\S+)( \([^)]*\))? to/gm, 'grant select on $1 to');
  check(file, text, 1);
  // What a batch executes as a text is Transact-SQL too.
  for (const executed of text.matchAll(/^ *exec \(N'((?:[^']|'')*)'\);$/gm)) {
    const line = text.slice(0, executed.index).split('\n').length;
    check(file, executed[1].replace(/''/g, "'"), line);
  }
}
console.log(`${process.argv.length - 2} scripts parsed, ${faults} faults`);
process.exit(faults === 0 ? 0 : 1);
