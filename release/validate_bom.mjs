// Validates a bill of materials as its format's own library does, strictly. Exit status 0 or 1.
//   node validate_bom.mjs MODULES FILE    MODULES is where the library is installed (node_modules)
import { createRequire } from "node:module";
import { readFileSync } from "node:fs";

const [modules, file] = process.argv.slice(2);
const { Spec, Validation } = createRequire(`${modules}/`)("@cyclonedx/cyclonedx-library");
const text = readFileSync(file, "utf8");
const validator = new Validation.JsonStrictValidator(Spec.Version[`v${JSON.parse(text).specVersion.replace(".", "dot")}`]);
const found = await validator.validate(text);
if (found !== null) {
  console.error(found);
  process.exit(1);
}
