// SPDX-License-Identifier: MIT
// The few words that belong to the page itself; everything else comes localised with the state.

const keys = [
    'back', 'delete', 'done', 'cancel', 'edit', 'save', 'add', 'share', 'post', 'send', 'selected', 'loading', 'darkMode',
    'connecting', 'lost', 'unreachable', 'unreachableHint', 'retry', 'empty', 'to', 'subject', 'attachments', 'settings', 'none', 'characters',
    'hours', 'minutes', 'dayHalf',
] as const;

export type Texts = Readonly<Record<(typeof keys)[number], string>>;

const tables: Readonly<Record<string, readonly string[]>> = {
    en: ['Back', 'Delete', 'Done', 'Cancel', 'Edit', 'Save', 'Add', 'Share', 'Post', 'Send', 'Selected', 'Loading', 'Dark Mode',
        'Connecting…', 'Connection lost. Reconnecting…', 'Settings cannot be reached', 'The connection is tried again by itself.', 'Try Again',
        'Nothing here yet', 'To:', 'Subject:', 'Attachments', 'Settings', 'None', 'Characters', 'Hours', 'Minutes', 'AM or PM'],
    de: ['Zurück', 'Löschen', 'Fertig', 'Abbrechen', 'Bearbeiten', 'Sichern', 'Hinzufügen', 'Teilen', 'Posten', 'Senden', 'Ausgewählt', 'Laden', 'Dunkelmodus',
        'Verbinden …', 'Verbindung unterbrochen. Neuer Versuch …', 'Einstellungen nicht erreichbar', 'Die Verbindung wird von selbst erneut versucht.', 'Erneut versuchen',
        'Noch nichts vorhanden', 'An:', 'Betreff:', 'Anhänge', 'Einstellungen', 'Keine', 'Zeichen', 'Stunden', 'Minuten', 'Tageshälfte'],
    fr: ['Retour', 'Supprimer', 'OK', 'Annuler', 'Modifier', 'Enregistrer', 'Ajouter', 'Partager', 'Publier', 'Envoyer', 'Sélectionné', 'Chargement', 'Mode sombre',
        'Connexion…', 'Connexion perdue. Nouvelle tentative…', 'Réglages inaccessibles', 'La connexion est retentée automatiquement.', 'Réessayer',
        'Rien pour le moment', 'À :', 'Objet :', 'Pièces jointes', 'Réglages', 'Aucun', 'Caractères', 'Heures', 'Minutes', 'Matin ou après-midi'],
    es: ['Atrás', 'Eliminar', 'OK', 'Cancelar', 'Editar', 'Guardar', 'Añadir', 'Compartir', 'Publicar', 'Enviar', 'Seleccionado', 'Cargando', 'Modo oscuro',
        'Conectando…', 'Se perdió la conexión. Reconectando…', 'No se puede acceder a Ajustes', 'Se vuelve a intentar la conexión automáticamente.', 'Reintentar',
        'Aún no hay nada', 'Para:', 'Asunto:', 'Archivos adjuntos', 'Ajustes', 'Ninguno', 'Caracteres', 'Horas', 'Minutos', 'Mañana o tarde'],
    ja: ['戻る', '削除', '完了', 'キャンセル', '編集', '保存', '追加', '共有', '投稿', '送信', '選択中', '読み込み中', 'ダークモード',
        '接続中…', '接続が切れました。再接続中…', '設定に接続できません', '自動的に再接続します。', '再試行',
        'まだ項目がありません', '宛先:', '件名:', '添付ファイル', '設定', 'なし', '文字数', '時', '分', '午前または午後'],
    'zh-Hans': ['返回', '删除', '完成', '取消', '编辑', '存储', '添加', '共享', '发布', '发送', '已选择', '正在载入', '深色模式',
        '正在连接…', '连接已断开，正在重新连接…', '无法连接到设置', '将自动重新连接。', '重试',
        '暂无内容', '收件人：', '主题：', '附件', '设置', '无', '字数', '小时', '分钟', '上午或下午'],
    ar: ['رجوع', 'حذف', 'تم', 'إلغاء', 'تحرير', 'حفظ', 'إضافة', 'مشاركة', 'نشر', 'إرسال', 'محدد', 'جارٍ التحميل', 'الوضع الداكن',
        'جارٍ الاتصال…', 'انقطع الاتصال. تجري إعادة الاتصال…', 'تعذر الوصول إلى الإعدادات', 'ستتم إعادة محاولة الاتصال تلقائيًا.', 'إعادة المحاولة',
        'لا يوجد شيء بعد', 'إلى:', 'الموضوع:', 'المرفقات', 'الإعدادات', 'بدون', 'الأحرف', 'الساعات', 'الدقائق', 'صباحًا أو مساءً'],
};

const asTexts = (table: readonly string[]): Texts => Object.fromEntries(keys.map((key, at) => [key, table[at] ?? ''])) as Record<(typeof keys)[number], string>;

/** The words in the table that fits a language tag best: the tag itself, then its language, then English. */
export function textsFor(tag: string): Texts {
    const language = tag.split('-')[0] ?? 'en';
    const chosen = tables[tag] ?? tables[language] ?? (tag.startsWith('zh') ? tables['zh-Hans'] : undefined) ?? tables['en'];
    return asTexts(chosen as readonly string[]);
}

/** What the system's own bar buttons say, by item number; Add and Action are drawn as symbols and only spoken. */
export function systemItemText(texts: Texts, item: number): string {
    const byNumber: Readonly<Record<number, string>> = { 0: texts.done, 1: texts.cancel, 2: texts.edit, 3: texts.save, 4: texts.add, 9: texts.share };
    return byNumber[item] ?? texts.done;
}
