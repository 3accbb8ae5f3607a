// lint-workflows.cjs LINTER FILE...: prints what the linter in the folder LINTER finds in the workflows. Exit code: 0 when it finds
// nothing, 1 otherwise.
const {readFileSync} = require('fs');
const [linter, ...files] = process.argv.slice(2);

require(linter + '/node.cjs').createLinter().then(lint => {
    const findings = files.flatMap(file => lint(readFileSync(file, 'utf8'), file));
    for (const {file, line, column, message} of findings) console.log(`${file}:${line}:${column}: ${message}`);
    // The linter keeps the program from ending by itself.
    process.exit(files.length > 0 && findings.length === 0 ? 0 : 1);
});
