// node check-openapi.js FILE: whether FILE is a valid OpenAPI 3.1 document, all of its references lead somewhere and
// its schemas are valid JSON Schemas (the schema of OpenAPI itself leaves them open).
import { Validator } from "@seriousme/openapi-schema-validator";
import Ajv2020 from "ajv/dist/2020.js";
import { readFileSync } from "node:fs";

const faults = [];
const document = JSON.parse(readFileSync(process.argv[2], "utf8"));

const validator = new Validator();
const { valid, errors } = await validator.validate(document);
if (!valid)
    faults.push(...(Array.isArray(errors) ? errors.map((e) => `${e.instancePath}: ${e.message}`) : [errors]));
else if (validator.version !== "3.1")
    faults.push(`version is ${validator.version}, not 3.1`);

const ajv = new Ajv2020({ strict: false });
function checkSchema(schema, path) {
    if (!ajv.validateSchema(schema))
        faults.push(...ajv.errors.map((e) => `${path}${e.instancePath}: ${e.message}`));
}
function walk(node, path) {
    if (node === null || typeof node !== "object")
        return;
    for (const [key, value] of Object.entries(node)) {
        const place = `${path}/${key}`;
        if (key === "schema")
            checkSchema(value, place);
        else if (place === "/components/schemas")
            Object.entries(value).forEach(([name, schema]) => checkSchema(schema, `${place}/${name}`));
        else if (key !== "example" && key !== "examples")
            walk(value, place);
    }
}
walk(document, "");

for (const fault of faults)
    console.error(fault);
console.log(`${process.argv[2]}: ${faults.length ? `${faults.length} faults` : "valid OpenAPI 3.1"}`);
process.exit(faults.length ? 1 : 0);
